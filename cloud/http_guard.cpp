#include "cloud/http_guard.h"

#include <pistache/peer.h>
#include <sys/socket.h>

#include <cctype>
#include <utility>

namespace Http = Pistache::Http;
namespace Tcp = Pistache::Tcp;

namespace {

constexpr const char* kConnectionData = "zel.connection";
/// What a refused client may still send before its connection is cut. Cutting at once would often
/// destroy the refusal before the client has read it.
constexpr std::size_t kMaxDiscarded = 2 * HttpGuard::kMaxRequest;

/// Judges a body by what the headers and chunk sizes announce, before the library reserves memory
/// for it.
class BodyGate : public Http::Private::BodyStep {
 public:
    using BodyStep::BodyStep;

    Http::Private::State apply(Pistache::StreamCursor& cursor) override {
        const Http::Header::Collection& headers = message->headers();
        const auto length = headers.tryGet<Http::Header::ContentLength>();
        if (length && length->value() > HttpGuard::kMaxBody)
            raise("", Http::Code::Request_Entity_Too_Large);
        // The library refuses a request that gives both.
        if (!length && headers.has<Http::Header::TransferEncoding>())
            checkChunks(cursor);
        const Http::Private::State state = BodyStep::apply(cursor);
        if (state == Http::Private::State::Done)
            nextChunk_ = 0;
        return state;
    }

 private:
    void checkChunks(const Pistache::StreamCursor& cursor) {
        const std::size_t here = cursor;
        const std::size_t end = here + cursor.remaining();
        if (nextChunk_ == 0)
            nextChunk_ = here;
        while (nextChunk_ < end) {
            const char* const line = cursor.offset(nextChunk_);
            const std::size_t available = end - nextChunk_;
            std::size_t digits = 0;
            std::size_t size = 0;
            for (; digits < available && std::isxdigit(static_cast<unsigned char>(line[digits]));
                 ++digits) {
                const char digit = line[digits];
                size = size * 16 + static_cast<std::size_t>(
                                       digit <= '9' ? digit - '0' : (digit | 0x20) - 'a' + 10);
                if (size > HttpGuard::kMaxBody)
                    raise("", Http::Code::Request_Entity_Too_Large);
            }
            if (digits == available)
                return;  // the rest of the line is still on its way
            if (digits == 0 || line[digits] != '\r')
                raise("");
            if (size == 0)
                return;
            nextChunk_ += digits + 2 + size + 2;
        }
    }

    std::size_t nextChunk_ = 0;  // where in the request the next size line begins; 0: not known
};

class GuardedParser : public Http::RequestParser {
 public:
    GuardedParser() : ParserImpl(HttpGuard::kMaxRequest) {
        allSteps[2] = std::make_unique<BodyGate>(&request);
    }
};

void endSending(const std::weak_ptr<Tcp::Peer>& weakPeer) {
    if (const auto peer = weakPeer.lock())
        ::shutdown(peer->fd(), SHUT_WR);
}

}  // namespace

/// What the guard knows about one connection. It lives as long as the library's own record of the
/// connection, which not every way of ending one reports.
class HttpGuard::Connection {
 public:
    explicit Connection(std::shared_ptr<Totals> totals) : totals_(std::move(totals)) {
        ++totals_->connections;
    }
    ~Connection() {
        release();
        --totals_->connections;
    }
    Connection(const Connection&) = delete;
    Connection& operator=(const Connection&) = delete;

    static std::shared_ptr<Connection> of(const std::shared_ptr<Tcp::Peer>& peer) {
        return std::static_pointer_cast<Connection>(peer->getData(kConnectionData));
    }

    void hold(std::size_t size) {
        held_ += size;
        totals_->held += size;
    }
    void release() {
        totals_->held -= held_;
        held_ = 0;
    }
    std::size_t held() const { return held_; }

    const std::shared_ptr<Http::RequestParser> parser = std::make_shared<GuardedParser>();
    bool refused = false;
    bool last = false;  // no request follows the present one
    std::size_t discarded = 0;
    int unsentAnswers = 0;

 private:
    std::shared_ptr<Totals> totals_;
    std::size_t held_ = 0;
};

HttpGuard::HttpGuard(Routes routes, std::shared_ptr<Pistache::Rest::Router> router)
    : routes_(std::move(routes)), router_(std::move(router)) {}

void HttpGuard::onConnection(const std::shared_ptr<Tcp::Peer>& peer) {
    const auto connection = std::make_shared<Connection>(totals_);
    peer->putData(ParserData, connection->parser);
    peer->putData(kConnectionData, connection);
    if (totals_->connections > kMaxConnections)
        ::shutdown(peer->fd(), SHUT_RDWR);
}

void HttpGuard::onInput(const char* data, std::size_t size,
                        const std::shared_ptr<Tcp::Peer>& peer) {
    const std::shared_ptr<Connection> connection = Connection::of(peer);
    if (connection->refused) {
        connection->discarded += size;
        if (connection->discarded > kMaxDiscarded)
            ::shutdown(peer->fd(), SHUT_RDWR);
        return;
    }
    Http::RequestParser* const parser = connection->parser.get();
    try {
        connection->hold(size);
        if (totals_->held > kMaxHeld)
            throw Http::HttpError(Http::Code::Service_Unavailable, "");
        if (!parser->feed(data, size))
            throw Http::HttpError(Http::Code::Request_Entity_Too_Large, "");
        const bool whole = parser->parse() == Http::Private::State::Done;
        if (!whole && parser->step()->id() != Http::Private::BodyStep::Id &&
            connection->held() > kMaxHead)
            throw Http::HttpError(Http::Code::Request_Header_Fields_Too_Large, "");
        if (!whole)
            return;
        // Taken out of the parser, so that an idle connection does not keep a large body's memory.
        const Http::Request request = std::move(parser->request);
        parser->reset();
        connection->release();
        handle(request, *connection, peer);
    } catch (const Http::HttpError& error) {
        refuse(static_cast<Http::Code>(error.code()), peer);
    } catch (const std::exception&) {
        refuse(Http::Code::Bad_Request, peer);
    }
}

void HttpGuard::handle(const Http::Request& request, Connection& connection,
                       const std::shared_ptr<Tcp::Peer>& peer) {
    // A well-behaved client reads an answer before it asks again.
    if (connection.unsentAnswers > 0) {
        ::shutdown(peer->fd(), SHUT_RDWR);
        return;
    }
    if (request.resource().size() > kMaxPath)
        throw Http::HttpError(Http::Code::RequestURI_Too_Long, "");
    if (request.body().size() > kMaxBody)
        throw Http::HttpError(Http::Code::Request_Entity_Too_Large, "");

    Http::ResponseWriter response(request.version(), transport(), this, peer);
    response.headers().add<Http::Header::AccessControlAllowOrigin>("*");
    const auto wish = request.headers().tryGet<Http::Header::Connection>();
    connection.last = !wish || wish->control() != Http::ConnectionControl::KeepAlive;
    response.headers().add<Http::Header::Connection>(wish ? wish->control()
                                                          : Http::ConnectionControl::Close);
    peer->setIdle(false);
    onRequest(request, std::move(response));
}

void HttpGuard::onRequest(const Http::Request& request, Http::ResponseWriter response) {
    const auto route = routes_.find(request.resource());
    if (route != routes_.end() && request.method() == Http::Method::Post)
        route->second(request, std::move(response));
    else
        router_->route(request, std::move(response));
}

void HttpGuard::send(Http::ResponseWriter& response, Http::Code code, const char* body,
                     std::size_t size) {
    const std::shared_ptr<Tcp::Peer> peer = response.getPeer();
    if (!peer)
        return;
    const std::shared_ptr<Connection> connection = Connection::of(peer);
    ++connection->unsentAnswers;
    const std::weak_ptr<Tcp::Peer> weakPeer = peer;
    const auto sent = [connection, weakPeer](ssize_t) {
        --connection->unsentAnswers;
        if (connection->last)
            endSending(weakPeer);
    };
    response.send(code, body, size).then(sent, Pistache::Async::IgnoreException);
}

void HttpGuard::refuse(Http::Code code, const std::shared_ptr<Tcp::Peer>& peer) {
    const std::shared_ptr<Connection> connection = Connection::of(peer);
    connection->refused = true;
    connection->release();
    connection->parser->reset();

    Http::ResponseWriter response(Http::Version::Http11, transport(), this, peer);
    response.headers().add<Http::Header::AccessControlAllowOrigin>("*");
    response.headers().add<Http::Header::Connection>(Http::ConnectionControl::Close);
    const std::weak_ptr<Tcp::Peer> weakPeer = peer;
    const auto sent = [weakPeer](ssize_t) { endSending(weakPeer); };
    response.send(code, "", 0).then(sent, Pistache::Async::IgnoreException);
}
