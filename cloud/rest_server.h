#pragma once

#include <pistache/net.h>
#include <pistache/router.h>

#include <QByteArray>
#include <QJsonObject>
#include <atomic>
#include <condition_variable>
#include <memory>
#include <mutex>

#include "cloud/command_folder.h"
#include "cloud/command_gate.h"
#include "cloud/decoded.h"
#include "cloud/http_endpoint.h"
#include "cloud/http_guard.h"
#include "link/device_records.h"

class CloudHost;

/// The HTTP server through which the management service commands the terminal.
///
/// One worker thread handles all requests, one at a time. A handler checks and translates its
/// request, hands it over to the host and answers at once: success means accepted, not carried out.
class RestServer {
 public:
    /// @p host and @p gate outlive the server; without a gate every command is handed over.
    RestServer(Pistache::Address address, CloudHost& host, CommandGate* gate = nullptr);
    ~RestServer();

    /// Sets the options and the routes. There is always one worker thread, whatever @p threads is.
    void init(unsigned int threads);
    /// Serves with other limits than those that the guard and the process set. Before start().
    void setLimits(const HttpGuard::Limits& limits);
    /// Serves until shutdown(). An address that cannot be had is tried again every second.
    void start();
    /// Makes start() return, now or as soon as it is called. Any thread, any time, also twice.
    void shutdown();

    /// The result envelope for @p code; see docs/rest-api.yaml.
    static QJsonObject getErrCodeJSon(int code);

 private:
    using Request = Pistache::Http::Request;
    using Response = Pistache::Http::ResponseWriter;
    enum class Permission { NotNeeded, ManagerControl };

    void setupRoutes();
    void doUserDataSend(const Request& request, Response response);
    void doUserDataInfo(const Request& request, Response response);
    void doUserDataDelete(const Request& request, Response response);
    void doUpdateFW(const Request& request, Response response);
    void doSetTime(const Request& request, Response response);
    void doSetDevice(const Request& request, Response response);
    void doSetSystem(const Request& request, Response response);
    void doDoorOpen(const Request& request, Response response);
    void doUserGroupInfo(const Request& request, Response response);
    void doDeviceStatus(const Request& request, Response response);
    void doRunEnrollMode(const Request& request, Response response);
    void doRunRecognizeMode(const Request& request, Response response);
    void doUserListInfo(const Request& request, Response response);
    void answerUnknown(const Request& request, Response response);

    /// The manager's address, dotted decimal.
    QString getManagerIP() const;

    template <typename Work>
    void serve(Response& response, Permission permission, Work work);
    int handOver(int command, const QVariant& parameter);
    template <typename Value>
    int handOver(int command, const Decoded<Value>& decoded);

    CloudHost& host_;
    CommandGate* const gate_;
    const Pistache::Address address_;
    const std::shared_ptr<HttpEndpoint> endpoint_;
    HttpGuard::Limits limits_;
    HttpGuard::Routes routes_;
    const std::shared_ptr<Pistache::Rest::Router> router_;  // has the same routes
    _gui_menu_ settings_{};  // as they were when the present request came
    CommandFolder commandFolder_;

    std::mutex stopLock_;
    std::condition_variable stopSignal_;
    std::atomic<bool> stopping_{false};
};
