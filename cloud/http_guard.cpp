#include "cloud/http_guard.h"

#include <pistache/peer.h>
#include <sys/socket.h>

#include <algorithm>
#include <cerrno>
#include <sstream>
#include <tuple>
#include <utility>
#include <vector>

namespace Http = Pistache::Http;
namespace Polling = Pistache::Polling;
namespace Tcp = Pistache::Tcp;

namespace {

using Clock = std::chrono::steady_clock;

constexpr const char* kConnectionData = "zel.connection";
/// What a client may send before it has read its answer. A well-behaved one reads first.
constexpr std::size_t kMaxFollowing = RequestReader::kMaxHead;
/// What a refused client may still send before its connection is cut. Cutting at once would often
/// destroy the refusal before the client has read it.
constexpr std::size_t kMaxDiscarded = 2 * HttpGuard::kMaxRequest;

/// A request whose body has not been through the library's parser.
class WholeRequest : public Http::Request {
 public:
    WholeRequest(Http::Request&& head, std::string&& body) : Request(std::move(head)) {
        body_ = std::move(body);
    }
};

std::string answerText(const Http::ResponseWriter& response, Http::Code code, const char* body,
                       std::size_t size) {
    std::ostringstream text;
    text << "HTTP/1.1 " << static_cast<int>(code) << ' ' << Http::codeString(code) << "\r\n";
    for (const auto& header : response.headers().list()) {
        text << header->name() << ": ";
        header->write(text);
        text << "\r\n";
    }
    text << "Content-Length: " << size << "\r\n\r\n";
    return text.str().append(body, size);
}

}  // namespace

/// All connections of the worker. They are its own: whoever has accepted one may be the last to let
/// go of the library's record of it.
class HttpGuard::Crowd {
 public:
    std::vector<std::shared_ptr<Connection>> connections;
    std::size_t held = 0;
    unsigned long round = 0;
};

/// What the guard knows about one connection. It is there as long as the library's own record of
/// the connection, which not every way of ending one reports, and until the worker next looks.
class HttpGuard::Connection {
 public:
    enum class Phase {
        New,        // has sent nothing yet
        Idle,       // may send another request
        Head,       // is sending one
        Body,       //
        Answering,  // has to read the answer, or waits for its turn
        Leaving,    // has got its last answer, or will
        Cut,
    };

    Connection(HttpGuard& owner, const Peer& itsPeer) : guard(owner), peer(itsPeer) {}
    Connection(const Connection&) = delete;
    Connection& operator=(const Connection&) = delete;

    static std::shared_ptr<Connection> of(const Peer& peer) {
        return std::static_pointer_cast<Connection>(peer->getData(kConnectionData));
    }

    void enter(Phase next) {
        if (phase == next)
            return;
        phase = next;
        since = Clock::now();
    }
    /// Takes into account what is held now; false when that is too much over all.
    bool account() { return hold(reader.held() + following.size() + answer.size()); }
    /// Holds nothing from now on.
    void leave() { hold(0); }
    /// Ends both ways at once; the library notices that and closes.
    void cut() {
        const bool isQuiet = phase == Phase::New || phase == Phase::Idle;
        enter(Phase::Cut);
        reader = RequestReader();
        following = {};
        answer = {};
        account();
        const Peer present = peer.lock();
        if (!present)
            return;
        // Closed as usual, the kernel would go on for minutes with a client that does not read.
        const linger atOnce{1, 0};
        if (!isQuiet)
            ::setsockopt(present->fd(), SOL_SOCKET, SO_LINGER, &atOnce, sizeof atOnce);
        ::shutdown(present->fd(), SHUT_RDWR);
    }

    HttpGuard& guard;
    const std::weak_ptr<Tcp::Peer> peer;
    Phase phase = Phase::New;
    Clock::time_point since = Clock::now();  // in this phase
    Clock::time_point heard = since;
    RequestReader reader;
    std::string following;  // has come before its turn
    std::size_t discarded = 0;
    unsigned long servedRound = 0;
    bool last = false;  // no request follows the present one
    std::string answer;
    std::size_t sent = 0;  // of the answer
    bool awaitsRoom = false;

 private:
    bool hold(std::size_t bytes) {
        std::size_t& all = guard.crowd_->held;
        all = all - held_ + bytes;
        held_ = bytes;
        return all <= kMaxHeld;
    }

    std::size_t held_ = 0;
};

HttpGuard::HttpGuard(Routes routes, std::shared_ptr<Pistache::Rest::Router> router,
                     const Limits& limits)
    : routes_(std::move(routes)),
      router_(std::move(router)),
      limits_(limits),
      parser_(std::make_shared<Http::RequestParser>(kMaxRequest)),
      crowd_(std::make_shared<Crowd>()) {}

void HttpGuard::beginRound() {
    ++crowd_->round;
}

void HttpGuard::endRound() {
    auto& all = crowd_->connections;
    const auto gone = std::partition(all.begin(), all.end(),
                                     [](const auto& one) { return !one->peer.expired(); });
    std::for_each(gone, all.end(), [](const auto& one) { one->leave(); });
    all.erase(gone, all.end());
}

// --- Input ---------------------------------------------------------------------------------

void HttpGuard::onConnection(const Peer& peer) {
    using Phase = Connection::Phase;
    auto& all = crowd_->connections;
    const auto isThere = [](const auto& one) {
        return one->phase != Phase::Cut && !one->peer.expired();
    };
    if (std::count_if(all.begin(), all.end(), isThere) >= limits_.connections) {
        // Who is in the middle of something goes only when everybody is.
        const auto rank = [&isThere](const auto& one) {
            const bool busy = one->phase == Phase::Head || one->phase == Phase::Body ||
                              one->phase == Phase::Answering;
            return std::make_tuple(!isThere(one), busy, one->heard);
        };
        const auto first =
            std::min_element(all.begin(), all.end(),
                             [&rank](const auto& a, const auto& b) { return rank(a) < rank(b); });
        (*first)->cut();
    }
    all.push_back(std::make_shared<Connection>(*this, peer));
    peer->putData(kConnectionData, all.back());
}

void HttpGuard::onInput(const char* data, std::size_t size, const Peer& peer) {
    const std::shared_ptr<Connection> connection = Connection::of(peer);
    connection->heard = Clock::now();
    read(data, size, *connection, peer);
}

void HttpGuard::read(const char* data, std::size_t size, Connection& connection, const Peer& peer) {
    using Phase = Connection::Phase;
    RequestReader& reader = connection.reader;
    while (size > 0) {
        if (connection.phase == Phase::Cut)
            return;
        if (connection.phase == Phase::Leaving) {
            connection.discarded += size;
            if (connection.discarded > kMaxDiscarded)
                connection.cut();
            return;
        }
        if (connection.servedRound == crowd_->round && connection.phase == Phase::Idle) {
            // Others have their turn first.
            connection.enter(Phase::Answering);
            awaitRoom(connection, peer, true);
        }
        if (connection.phase == Phase::Answering) {
            connection.following.append(data, size);
            if (!connection.account())
                return connection.cut();
            if (connection.following.size() <= kMaxFollowing)
                return;
            if (!connection.answer.empty())
                return connection.cut();
            // It has read its answer and sends a long request: that is worth a turn out of turn.
            awaitRoom(connection, peer, false);
            connection.enter(Phase::Idle);
            connection.servedRound = crowd_->round - 1;
            const std::string following = std::exchange(connection.following, {});
            return read(following.data(), following.size(), connection, peer);
        }
        const std::size_t taken = reader.take(data, size);
        data += taken;
        size -= taken;
        switch (reader.state()) {
            case RequestReader::State::Waiting:
                break;
            case RequestReader::State::Head:
                connection.enter(Phase::Head);
                break;
            case RequestReader::State::Body:
                connection.enter(Phase::Body);
                break;
            case RequestReader::State::Whole:
                handle(connection, peer);
                continue;
            case RequestReader::State::Refused:
                refuse(static_cast<Http::Code>(reader.refusal()), connection, peer);
                continue;
        }
        if (!connection.account())
            refuse(Http::Code::Service_Unavailable, connection, peer);
    }
}

void HttpGuard::handle(Connection& connection, const Peer& peer) {
    connection.enter(Connection::Phase::Answering);
    connection.servedRound = crowd_->round;
    RequestReader& reader = connection.reader;
    try {
        connection.last = !reader.keepAlive();
        const Http::Request request = take(reader, *parser_);
        reader = RequestReader();
        connection.account();

        Http::ResponseWriter response(request.version(), transport(), this, peer);
        response.headers().add<Http::Header::AccessControlAllowOrigin>("*");
        response.headers().add<Http::Header::Connection>(
            connection.last ? Http::ConnectionControl::Close : Http::ConnectionControl::KeepAlive);
        onRequest(request, std::move(response));
    } catch (const Http::HttpError& error) {
        refuse(static_cast<Http::Code>(error.code()), connection, peer);
    } catch (const std::exception&) {
        refuse(Http::Code::Bad_Request, connection, peer);
    }
}

Http::Request HttpGuard::take(RequestReader& reader, Http::RequestParser& parser) {
    const std::string line = reader.method() + ' ' + reader.path() +
                             (reader.isVersion10() ? " HTTP/1.0\r\n\r\n" : " HTTP/1.1\r\n\r\n");
    parser.reset();
    if (!parser.feed(line.data(), line.size()) || parser.parse() != Http::Private::State::Done)
        throw Http::HttpError(Http::Code::Bad_Request, "");
    return WholeRequest(std::move(parser.request), reader.takeBody());
}

void HttpGuard::onRequest(const Http::Request& request, Http::ResponseWriter response) {
    const auto route = routes_.find(request.resource());
    if (route != routes_.end() && request.method() == Http::Method::Post)
        route->second(request, std::move(response));
    else
        router_->route(request, std::move(response));
}

// --- Answers -------------------------------------------------------------------------------

void HttpGuard::send(Http::ResponseWriter& response, Http::Code code, const char* body,
                     std::size_t size) {
    const Peer peer = response.getPeer();
    if (!peer)
        return;
    const std::shared_ptr<Connection> connection = Connection::of(peer);
    if (connection->phase == Connection::Phase::Cut || !connection->answer.empty())
        return;
    connection->answer = answerText(response, code, body, size);
    connection->sent = 0;
    connection->guard.write(*connection, peer);
}

/// Writes as much of the answer as there is room for.
void HttpGuard::write(Connection& connection, const Peer& peer) {
    std::string& answer = connection.answer;
    while (connection.sent < answer.size()) {
        const ssize_t count = ::send(peer->fd(), answer.data() + connection.sent,
                                     answer.size() - connection.sent, MSG_NOSIGNAL | MSG_DONTWAIT);
        if (count >= 0) {
            connection.sent += static_cast<std::size_t>(count);
        } else if (errno == EAGAIN || errno == EWOULDBLOCK) {
            if (!connection.account())
                return connection.cut();
            return awaitRoom(connection, peer, true);
        } else if (errno != EINTR) {
            return connection.cut();
        }
    }
    answer = {};
    connection.account();
    awaitRoom(connection, peer, false);
    if (connection.last) {
        connection.enter(Connection::Phase::Leaving);
        ::shutdown(peer->fd(), SHUT_WR);
    } else {
        connection.enter(Connection::Phase::Idle);
    }
}

/// Has the transport call onRoom(), or not any more.
void HttpGuard::awaitRoom(Connection& connection, const Peer& peer, bool wanted) {
    if (connection.awaitsRoom == wanted)
        return;
    connection.awaitsRoom = wanted;
    const auto events = wanted ? Polling::NotifyOn::Write : Polling::NotifyOn::Shutdown;
    transport()->reactor()->modifyFd(transport()->key(), peer->fd(),
                                     Polling::NotifyOn::Read | events, Polling::Mode::Edge);
}

void HttpGuard::onRoom(const Peer& peer) {
    const std::shared_ptr<Connection> connection = Connection::of(peer);
    if (connection->phase != Connection::Phase::Answering &&
        connection->phase != Connection::Phase::Leaving)
        return;
    write(*connection, peer);
    const std::string following = std::exchange(connection->following, {});
    if (connection->phase == Connection::Phase::Idle)
        read(following.data(), following.size(), *connection, peer);
    connection->account();
}

void HttpGuard::refuse(Http::Code code, Connection& connection, const Peer& peer) {
    connection.enter(Connection::Phase::Leaving);
    connection.last = true;
    connection.reader = RequestReader();
    connection.following = {};
    Http::ResponseWriter response(Http::Version::Http11, transport(), this, peer);
    response.headers().add<Http::Header::AccessControlAllowOrigin>("*");
    response.headers().add<Http::Header::Connection>(Http::ConnectionControl::Close);
    send(response, code, "", 0);
}

// --- Time ----------------------------------------------------------------------------------

void HttpGuard::watch() {
    const Clock::time_point now = Clock::now();
    for (const auto& connection : crowd_->connections)
        judge(*connection, now);
}

void HttpGuard::judge(Connection& connection, Clock::time_point now) {
    using Phase = Connection::Phase;
    const auto limit = [this](Phase phase) {
        switch (phase) {
            case Phase::New:
            case Phase::Head:
                return limits_.head;
            case Phase::Body:
                return limits_.body;
            case Phase::Idle:
                return limits_.idle;
            case Phase::Answering:
                return limits_.answer;
            case Phase::Leaving:
            case Phase::Cut:
                break;
        }
        return limits_.farewell;
    };
    const Phase phase = connection.phase;
    if (phase == Phase::Cut || now - connection.since <= limit(phase))
        return;
    const Peer peer = connection.peer.lock();
    if (peer && (phase == Phase::New || phase == Phase::Head || phase == Phase::Body))
        refuse(Http::Code::Request_Timeout, connection, peer);
    else
        connection.cut();
}
