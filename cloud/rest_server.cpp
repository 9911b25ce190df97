#include "cloud/rest_server.h"

#include <pthread.h>
#include <signal.h>

#include <QString>
#include <chrono>
#include <exception>
#include <utility>

#include "cloud/cloud_host.h"
#include "cloud/cloud_log.h"
#include "cloud/http_guard.h"

namespace Http = Pistache::Http;
namespace Rest = Pistache::Rest;
namespace Tcp = Pistache::Tcp;

namespace {

constexpr std::chrono::seconds kRetryInterval{1};
/// A client gets this long to send a request and to think between two.
constexpr std::chrono::seconds kHeaderTimeout{10};
constexpr std::chrono::seconds kBodyTimeout{30};
constexpr std::chrono::seconds kKeepAliveTimeout{60};

/// Keeps signals away from the threads that the library starts: a thread inherits the mask of the
/// one that starts it, and the process's signals are the GUI thread's business. It also spares the
/// process the signal for a client that goes away.
class SignalsBlocked {
 public:
    SignalsBlocked() {
        sigset_t all;
        sigfillset(&all);
        pthread_sigmask(SIG_BLOCK, &all, &before_);
    }
    ~SignalsBlocked() { pthread_sigmask(SIG_SETMASK, &before_, nullptr); }
    SignalsBlocked(const SignalsBlocked&) = delete;
    SignalsBlocked& operator=(const SignalsBlocked&) = delete;

 private:
    sigset_t before_;
};

}  // namespace

RestServer::RestServer(Pistache::Address address, CloudHost& host)
    : host_(host),
      address_(std::move(address)),
      endpoint_(std::make_shared<Http::Endpoint>(address_)),
      router_(std::make_shared<Rest::Router>()) {}

RestServer::~RestServer() = default;

void RestServer::init(unsigned int /*threads*/) {
    // A restart must not wait for the connections of the last run to fade, and programs that the
    // terminal starts must not inherit the sockets.
    const auto flags = Pistache::Flags<Tcp::Options>(Tcp::Options::ReuseAddr) |
                       Pistache::Flags<Tcp::Options>(Tcp::Options::CloseOnExec);
    endpoint_->init(Http::Endpoint::options()
                        .threads(1)
                        .flags(flags)
                        .maxRequestSize(HttpGuard::kMaxRequest)
                        .headerTimeout(kHeaderTimeout)
                        .bodyTimeout(kBodyTimeout)
                        .keepaliveTimeout(kKeepAliveTimeout));
    setupRoutes();
}

void RestServer::setupRoutes() {}

void RestServer::start() {
    const SignalsBlocked quiet;
    endpoint_->setHandler(std::make_shared<HttpGuard>(router_));
    bool complained = false;
    std::unique_lock<std::mutex> lock(stopLock_);
    while (!stopped_) {
        // The library's blocking call heeds a shutdown only once it waits for connections. Here all
        // calls into the library come from one thread, so a stop can never come too early.
        try {
            endpoint_->serveThreaded();
            qCInfo(cloudLog, "REST server listening on port %d", int(address_.port()));
            stopSignal_.wait(lock, [this] { return stopped_; });
            endpoint_->shutdown();
        } catch (const std::exception& error) {
            if (!complained)
                qCWarning(cloudLog,
                          "REST server cannot listen on port %d (%s), trying every second",
                          int(address_.port()), error.what());
            complained = true;
            stopSignal_.wait_for(lock, kRetryInterval, [this] { return stopped_; });
        }
    }
    endpoint_.reset();  // waits for the worker
}

void RestServer::shutdown() {
    {
        const std::lock_guard<std::mutex> lock(stopLock_);
        stopped_ = true;
    }
    stopSignal_.notify_all();
}

QJsonObject RestServer::getErrCodeJSon(int code) {
    QString result = QString::number(code);
    QString message;
    switch (code) {
        case 0:
        case 1000:
            result = QStringLiteral("1000");
            message = QStringLiteral("succeed");
            break;
        case 2000:
            message = QStringLiteral("Do not allow manager control");
            break;
        case 3001:
            message =
                QStringLiteral("check User CardNo Length (Min ~ Max : %1 ~ %2 )").arg(6).arg(11);
            break;
        default:
            result = QStringLiteral("9999");
            message = QStringLiteral("Unknown Error");
    }
    return {{QStringLiteral("resultCode"), result}, {QStringLiteral("resultMessage"), message}};
}
