#include "screens/facesearch/fsv_start.h"

#include <poll.h>
#include <unistd.h>

#include <atomic>
#include <cerrno>
#include <chrono>

#include "screens/facesearch/fsv_output.h"
#include "screens/facesearch/fsv_tools.h"
#include "screens/facesearch/receive_func.h"
#include "screens/facesearch/st_client.h"

namespace {

constexpr std::chrono::milliseconds kRetryTime(5000);
constexpr std::chrono::milliseconds kLastAnswerTime(10000);
constexpr std::size_t kMaxLine = 4096;
constexpr unsigned char kRequestType = 1;
constexpr char kQuit[] = "q";

/// What somebody waits for: a place for each reason, any of which may be absent.
struct Waiting {
    enum Reason { Stop, Input, End, Answer };
    pollfd reasons[4] = {{-1, POLLIN, 0}, {-1, POLLIN, 0}, {-1, POLLIN, 0}, {-1, POLLIN, 0}};

    explicit Waiting(const FsvSession& session) {
        if (session.stop != nullptr)
            reasons[Stop].fd = session.stop->descriptor();
        if (session.console != nullptr)
            reasons[Input].fd = session.console->descriptor();
    }
    /// For @p milliseconds at most, -1 for ever; false when that is over.
    bool wait(std::chrono::milliseconds::rep milliseconds) {
        int ready = 0;
        do
            ready = ::poll(reasons, std::size(reasons), static_cast<int>(milliseconds));
        while (ready < 0 && errno == EINTR);
        return ready > 0;
    }
    bool has(Reason reason) const { return reasons[reason].revents != 0; }
};

bool isOver(const FsvConsole* console) {
    return console != nullptr && console->hasEnded();
}

/// One connection, and what the operator wants of it.
class Session {
 public:
    explicit Session(const FsvSession& session)
        : session_(session), client_(session.server.address.c_str(), session.server.port, 0) {
        if (session.stop != nullptr)
            client_.setStopDescriptor(session.stop->descriptor());
        client_.setTellsFailure(session.tellsFailure);
        // Before there is a connection: a server may speak at once.
        client_.ST_SetReceiveFunc([this](int kind, void* record) { answered(kind, record); });
    }

    FsvEnd run() {
        if (client_.ST_Connect() != 0)
            return session_.stop != nullptr && session_.stop->isSet() ? FsvEnd::Stopped
                                                                      : FsvEnd::NotConnected;
        for (;;) {
            const bool last = isOver(session_.console);
            if (last && unanswered_ == 0)
                return FsvEnd::Quit;
            Waiting waiting(session_);
            waiting.reasons[Waiting::End].fd = client_.endDescriptor();
            waiting.reasons[Waiting::Answer].fd = answer_.descriptor();
            if (!waiting.wait(last ? kLastAnswerTime.count() : -1))
                return FsvEnd::Quit;
            if (waiting.has(Waiting::Stop))
                return FsvEnd::Stopped;
            if (waiting.has(Waiting::Input) && !operate())
                return FsvEnd::Quit;
            if (waiting.has(Waiting::End))
                return FsvEnd::Lost;
            if (waiting.has(Waiting::Answer))
                answer_.clear();
        }
    }

 private:
    void answered(int kind, void* record) {
        ReceiveFunc(kind, record);
        if (kind != face_message::FaceInfo || record == nullptr)
            return;
        if (session_.recognised)
            session_.recognised(*static_cast<const FaceInfoRecord*>(record));
        // One that nobody has asked for answers nothing.
        int open = unanswered_;
        while (open > 0 && !unanswered_.compare_exchange_weak(open, open - 1)) {
        }
        answer_.set();
    }

    /// Does what was typed; false when that was to quit.
    bool operate() {
        const std::vector<std::string> lines = session_.console->readLines();
        for (const std::string& line : lines) {
            if (line == kQuit)
                return false;
            request(line);
        }
        return true;
    }

    void request(const std::string& path) {
        const int size = GetFileSize(path.c_str());
        std::vector<unsigned char> image(size > 0 ? static_cast<std::size_t>(size) : 0);
        const int read = size < 0 ? -1 : GetImageFromFile(path.c_str(), image.data(), size);
        if (read < 0) {
            fsvPrint("Can not read %s\n", path.c_str());
            return;
        }
        ++unanswered_;
        if (client_.ST_RequestFaceInfo(kRequestType, session_.console->nextRequest(), 0, 0, read,
                                       image.data()) != 0)
            fsvPrint("Can not send %s\n", path.c_str());
    }

    const FsvSession& session_;
    std::atomic<int> unanswered_{0};
    WakeDescriptor answer_;
    ST_Client client_;  // goes first, with its thread
};

/// Waits until it is time to connect again. No operator is kept from quitting.
FsvEnd rest(const FsvSession& session) {
    using Clock = std::chrono::steady_clock;
    const auto end = Clock::now() + kRetryTime;
    while (!isOver(session.console)) {
        Waiting waiting(session);
        const auto left = std::chrono::ceil<std::chrono::milliseconds>(end - Clock::now()).count();
        if (left <= 0 || !waiting.wait(left))
            return FsvEnd::Lost;
        if (waiting.has(Waiting::Stop))
            return FsvEnd::Stopped;
        const std::vector<std::string> lines = session.console->readLines();
        for (const std::string& line : lines) {
            if (line == kQuit)
                return FsvEnd::Quit;
            fsvPrint("Can not send %s\n", line.c_str());
        }
    }
    return FsvEnd::Quit;
}

}  // namespace

bool FsvConsole::isThere() {
    return ::isatty(STDIN_FILENO) == 1 && ::tcgetpgrp(STDIN_FILENO) == ::getpgrp();
}

std::vector<std::string> FsvConsole::readLines() {
    char bytes[1024];
    const ssize_t got = ::read(STDIN_FILENO, bytes, sizeof bytes);
    std::vector<std::string> lines;
    if (got < 0 && (errno == EINTR || errno == EAGAIN))
        return lines;
    ended_ = got <= 0;
    const auto finish = [this, &lines] {
        if (!begun_.empty() && begun_.size() <= kMaxLine)
            lines.push_back(begun_);
        begun_.clear();
    };
    for (ssize_t i = 0; i < got; ++i) {
        if (bytes[i] == '\n')
            finish();
        else if (begun_.size() <= kMaxLine)
            begun_ += bytes[i];
    }
    if (ended_)
        finish();
    return lines;
}

FsvEnd fsv_start(const FsvSession& session) {
    return Session(session).run();
}

FsvEnd fsvKeepUp(FsvSession session, bool patient) {
    for (;;) {
        const FsvEnd end = fsv_start(session);
        if (end == FsvEnd::Quit || end == FsvEnd::Stopped)
            return end;
        patient = patient || end == FsvEnd::Lost;
        if (!patient)
            return end;
        // A server that stays away is told of once.
        session.tellsFailure = end == FsvEnd::Lost;
        const FsvEnd rested = rest(session);
        if (rested != FsvEnd::Lost)
            return rested;
    }
}
