#include "bench/scenario/bare_server.h"

#include <pistache/endpoint.h>

#include <chrono>

#include "cloud/http_guard.h"

namespace Http = Pistache::Http;
namespace Tcp = Pistache::Tcp;

namespace {

/// As long as what the terminal answers.
constexpr char kAnswer[] =
    "{\n    \"resultCode\": \"1000\",\n    \"resultMessage\": \"succeed\"\n}\n";

class BareHandler : public Http::Handler {
 public:
    HTTP_PROTOTYPE(BareHandler)

    void onRequest(const Http::Request&, Http::ResponseWriter response) override {
        response.headers().add<Http::Header::AccessControlAllowOrigin>("*");
        response.send(Http::Code::Ok, kAnswer);
    }
};

}  // namespace

BareServer::BareServer(int port)
    : endpoint_(std::make_unique<Http::Endpoint>(
          Pistache::Address(Pistache::Ipv4::loopback(), static_cast<std::uint16_t>(port)))) {
    // The terminal's options.
    endpoint_->init(Http::Endpoint::options()
                        .threads(1)
                        .flags(Pistache::Flags<Tcp::Options>(Tcp::Options::ReuseAddr) |
                               Pistache::Flags<Tcp::Options>(Tcp::Options::CloseOnExec))
                        .maxRequestSize(HttpGuard::kMaxRequest)
                        .headerTimeout(std::chrono::seconds(10))
                        .bodyTimeout(std::chrono::seconds(30))
                        .keepaliveTimeout(std::chrono::seconds(60)));
    endpoint_->setHandler(std::make_shared<BareHandler>());
    endpoint_->serveThreaded();
}

BareServer::~BareServer() {
    endpoint_->shutdown();
}
