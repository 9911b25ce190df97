#pragma once

#include <pistache/http.h>
#include <pistache/router.h>

#include <chrono>
#include <cstddef>
#include <functional>
#include <memory>
#include <string>
#include <unordered_map>

#include "cloud/request_reader.h"

/// Stands between the network and the routes: whatever clients send, only whole requests of a
/// bounded size get through, and what they make the process hold is bounded as well. The HTTP
/// library sees nothing but the line of a request that is whole.
///
/// Every answer goes through the guard, which writes it, cuts off who does not read and closes the
/// connection when the answer says so. Answers of its own carry a status and no text. Used by the
/// server's single worker thread, with HttpTransport.
class HttpGuard : public Pistache::Http::Handler {
 public:
    HTTP_PROTOTYPE(HttpGuard)

    using Peer = std::shared_ptr<Pistache::Tcp::Peer>;

    static constexpr std::size_t kMaxBody = RequestReader::kMaxBody;
    static constexpr std::size_t kMaxRequest = RequestReader::kMaxHead + kMaxBody;
    /// Bytes of requests that are not answered and of answers that are not sent, over all
    /// connections.
    static constexpr std::size_t kMaxHeld = std::size_t{16} * 1024 * 1024;

    struct Limits {
        /// Open connections; one more takes the place of the one that has been idle longest.
        int connections = 128;
        /// What a client may take for the head of a request and for its body, to ask again, to
        /// read an answer and to close the connection.
        std::chrono::milliseconds head{10000};
        std::chrono::milliseconds body{30000};
        std::chrono::milliseconds idle{60000};
        std::chrono::milliseconds answer{30000};
        std::chrono::milliseconds farewell{10000};
        /// How often that is looked at while anybody is connected.
        std::chrono::milliseconds watch{1000};
    };

    using Route =
        std::function<void(const Pistache::Http::Request&, Pistache::Http::ResponseWriter&&)>;
    /// Routes of posted requests by their paths.
    using Routes = std::unordered_map<std::string, Route>;

    /// Posted requests with the very path of one of @p routes go there, all others to @p router,
    /// whose matching and copying of a request costs half as much as serving it. Neither gets to
    /// see a request's headers.
    HttpGuard(Routes routes, std::shared_ptr<Pistache::Rest::Router> router, const Limits& limits);

    void onRequest(const Pistache::Http::Request& request,
                   Pistache::Http::ResponseWriter response) override;

    /// Answers a request, with the headers of @p response. Routes answer through this only.
    static void send(Pistache::Http::ResponseWriter& response, Pistache::Http::Code code,
                     const char* body, std::size_t size);

    /// Takes the request that is whole out of @p reader, in the form that the library knows; throws
    /// Http::HttpError when it knows none. @p parser serves for that and for nothing else.
    static Pistache::Http::Request take(RequestReader& reader,
                                        Pistache::Http::RequestParser& parser);

    const Limits& limits() const { return limits_; }
    /// To be called before what has become ready at the same time is dealt with: nobody is served
    /// twice in a round.
    void beginRound();
    /// To be called when it has been: forgets the connections that have ended.
    void endRound();
    /// There is room for more of an answer again.
    void onRoom(const Peer& peer);
    /// Ends the connections whose time is over.
    void watch();

 private:
    class Connection;
    class Crowd;

    void onConnection(const Peer& peer) override;
    void onInput(const char* data, std::size_t size, const Peer& peer) override;
    void read(const char* data, std::size_t size, Connection& connection, const Peer& peer);
    void handle(Connection& connection, const Peer& peer);
    void write(Connection& connection, const Peer& peer);
    void awaitRoom(Connection& connection, const Peer& peer, bool wanted);
    void refuse(Pistache::Http::Code code, Connection& connection, const Peer& peer);
    void judge(Connection& connection, std::chrono::steady_clock::time_point now);

    const Routes routes_;
    const std::shared_ptr<Pistache::Rest::Router> router_;
    const Limits limits_;
    const std::shared_ptr<Pistache::Http::RequestParser> parser_;
    const std::shared_ptr<Crowd> crowd_;
};
