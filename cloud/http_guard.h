#pragma once

#include <pistache/http.h>
#include <pistache/router.h>

#include <cstddef>
#include <functional>
#include <memory>
#include <string>
#include <unordered_map>

/// Stands between the network and the routes: whatever clients send, only whole requests of a
/// bounded size get through, and what they make the process hold is bounded as well.
///
/// Answers of its own carry a status and no text. Used by the server's single worker thread.
class HttpGuard : public Pistache::Http::Handler {
 public:
    HTTP_PROTOTYPE(HttpGuard)

    /// The largest body that reaches a route, in bytes.
    static constexpr std::size_t kMaxBody = std::size_t{2} * 1024 * 1024;
    /// The largest request line and headers together. The library's own limit is on a whole
    /// request, so it has to leave room for both.
    static constexpr std::size_t kMaxHead = std::size_t{16} * 1024;
    static constexpr std::size_t kMaxRequest = kMaxHead + kMaxBody;
    /// Paths are short; the router matches them with a recursion that long ones would exhaust.
    static constexpr std::size_t kMaxPath = 256;
    /// Open connections; further ones are closed at once.
    static constexpr int kMaxConnections = 128;
    /// Bytes of requests not yet whole, over all connections.
    static constexpr std::size_t kMaxHeld = std::size_t{16} * 1024 * 1024;

    using Route =
        std::function<void(const Pistache::Http::Request&, Pistache::Http::ResponseWriter&&)>;
    /// Routes of posted requests by their paths.
    using Routes = std::unordered_map<std::string, Route>;

    /// Posted requests with the very path of one of @p routes go there, all others to @p router,
    /// whose matching and copying of a request costs half as much as serving it.
    HttpGuard(Routes routes, std::shared_ptr<Pistache::Rest::Router> router);

    void onRequest(const Pistache::Http::Request& request,
                   Pistache::Http::ResponseWriter response) override;

    /// Answers a request. Routes answer through this only: a client that does not read its answers
    /// is noticed here.
    static void send(Pistache::Http::ResponseWriter& response, Pistache::Http::Code code,
                     const char* body, std::size_t size);

 private:
    class Connection;
    struct Totals {
        int connections = 0;
        std::size_t held = 0;
    };

    void onConnection(const std::shared_ptr<Pistache::Tcp::Peer>& peer) override;
    void onInput(const char* data, std::size_t size,
                 const std::shared_ptr<Pistache::Tcp::Peer>& peer) override;
    void handle(const Pistache::Http::Request& request, Connection& connection,
                const std::shared_ptr<Pistache::Tcp::Peer>& peer);
    void refuse(Pistache::Http::Code code, const std::shared_ptr<Pistache::Tcp::Peer>& peer);

    const Routes routes_;
    const std::shared_ptr<Pistache::Rest::Router> router_;
    std::shared_ptr<Totals> totals_ = std::make_shared<Totals>();
};
