#pragma once

#include <pistache/endpoint.h>
#include <pistache/router.h>

#include <QByteArray>
#include <QJsonObject>
#include <condition_variable>
#include <memory>
#include <mutex>

class CloudHost;

/// The HTTP server through which the management service commands the terminal.
///
/// One worker thread handles all requests, one at a time. A handler checks and translates its
/// request, hands it over to the host and answers at once: success means accepted, not carried out.
class RestServer {
 public:
    RestServer(Pistache::Address address, CloudHost& host);
    ~RestServer();

    /// Sets the options and the routes. There is always one worker thread, whatever @p threads is.
    void init(unsigned int threads);
    /// Serves until shutdown(). An address that cannot be had is tried again every second.
    void start();
    /// Makes start() return, now or as soon as it is called. Any thread, any time, also twice.
    void shutdown();

    /// The result envelope for @p code; see docs/rest-api.yaml.
    static QJsonObject getErrCodeJSon(int code);

 private:
    void setupRoutes();

    CloudHost& host_;
    const Pistache::Address address_;
    std::shared_ptr<Pistache::Http::Endpoint> endpoint_;
    const std::shared_ptr<Pistache::Rest::Router> router_;

    std::mutex stopLock_;
    std::condition_variable stopSignal_;
    bool stopped_ = false;
};
