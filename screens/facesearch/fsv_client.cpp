#include "screens/facesearch/fsv_client.h"

#include <csignal>
#include <utility>

#include "screens/facesearch/fsv_output.h"
#include "screens/facesearch/fsv_start.h"

namespace {

/// A server that answers without end must not keep the screen from anything else.
constexpr int kPause = 200;  // milliseconds

}  // namespace

FsvClient::FsvClient(FaceSearchServer server, QObject* parent)
    : QThread(parent), server_(std::move(server)) {
    pause_.setSingleShot(true);
    pause_.setInterval(kPause);
    connect(&pause_, &QTimer::timeout, this, &FsvClient::deliver);
}

FsvClient::~FsvClient() {
    stop_.set();
    wait();
}

void FsvClient::run() {
    // Nobody may read what is printed any more; that ends no terminal. In the background its
    // console is nobody's; a read then fails and stops nothing.
    sigset_t held;
    ::sigemptyset(&held);
    ::sigaddset(&held, SIGPIPE);
    ::sigaddset(&held, SIGTTIN);
    ::pthread_sigmask(SIG_BLOCK, &held, nullptr);
    fsvPrintWaits(false);

    FsvConsole console;
    FsvSession session;
    session.server = server_;
    session.console = FsvConsole::isThere() ? &console : nullptr;
    session.recognised = [this](const FaceInfoRecord& face) { keep(face); };
    session.stop = &stop_;
    if (fsvKeepUp(session, true) != FsvEnd::Quit || !console.hasEnded())
        return;
    // Its operator has gone, the terminal's users have not.
    session.console = nullptr;
    fsvKeepUp(session, true);
}

void FsvClient::keep(const FaceInfoRecord& face) {
    const std::lock_guard<std::mutex> lock(lock_);
    const bool asked = latest_.has_value();
    latest_ = face;
    if (!asked)
        QMetaObject::invokeMethod(this, &FsvClient::deliver, Qt::QueuedConnection);
}

void FsvClient::deliver() {
    if (pause_.isActive())
        return;
    std::optional<FaceInfoRecord> face;
    {
        const std::lock_guard<std::mutex> lock(lock_);
        face = std::exchange(latest_, std::nullopt);
    }
    if (!face)
        return;
    pause_.start();
    emit recognised(*face);
}
