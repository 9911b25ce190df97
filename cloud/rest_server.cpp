#include "cloud/rest_server.h"

#include <pthread.h>
#include <signal.h>

#include <QDateTime>
#include <QJsonDocument>
#include <QString>
#include <algorithm>
#include <chrono>
#include <exception>
#include <utility>

#include "base/descriptors.h"
#include "base/ipv4.h"
#include "cloud/cloud_host.h"
#include "cloud/cloud_log.h"
#include "cloud/firmware_orders.h"
#include "cloud/parameters.h"
#include "cloud/terminal_routes.h"
#include "cloud/user_routes.h"
#include "cloud/user_table.h"

namespace Http = Pistache::Http;
namespace Rest = Pistache::Rest;

using namespace host_command;

namespace {

constexpr std::chrono::seconds kRetryInterval{1};
/// Clients get a quarter of what the process may have open, files and all.
constexpr int kDescriptorsPerConnection = 4;
/// Connections that may wait for their turn to be accepted or closed beside those that are served.
constexpr int kInTransit = 8;

CommandGate::Cost costOf(int command) {
    const bool light = command == kGetUser || command == kOpenDoor || command == kSetTime;
    return light ? CommandGate::kLight : CommandGate::kHeavy;
}

QByteArray bodyOf(const Http::Request& request) {
    const std::string& body = request.body();
    return QByteArray::fromRawData(body.data(), static_cast<int>(body.size()));
}

/// The whole answer of a route that returns a result only.
QByteArray envelope(int code) {
    // Most answers are this one.
    static const QByteArray succeed =
        QJsonDocument(RestServer::getErrCodeJSon(result::kSucceed)).toJson();
    return code == result::kSucceed ? succeed
                                    : QJsonDocument(RestServer::getErrCodeJSon(code)).toJson();
}

/// The whole answer of a route that returns @p data beside its success.
QByteArray envelopeWith(const QJsonObject& data) {
    QJsonObject answer = RestServer::getErrCodeJSon(result::kSucceed);
    for (auto value = data.begin(); value != data.end(); ++value)
        answer.insert(value.key(), value.value());
    return QJsonDocument(answer).toJson();
}

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

RestServer::RestServer(Pistache::Address address, CloudHost& host, CommandGate* gate)
    : host_(host),
      gate_(gate),
      address_(address),
      endpoint_(std::make_shared<HttpEndpoint>(address_)),
      router_(std::make_shared<Rest::Router>()) {}

RestServer::~RestServer() = default;

void RestServer::init(unsigned int /*threads*/) {
    HttpGuard::Limits limits;
    limits.connections =
        std::min(limits.connections, Descriptors::limit() / kDescriptorsPerConnection);
    setLimits(limits);
    setupRoutes();
}

void RestServer::setLimits(const HttpGuard::Limits& limits) {
    limits_ = limits;
    endpoint_->init(limits.connections + std::min(limits.connections, kInTransit));
}

void RestServer::setupRoutes() {
    const auto bind = [this](const char* name,
                             void (RestServer::*handler)(const Request&, Response)) {
        const std::string path = std::string("/cloud-service/rest-api/") + name;
        routes_[path] = [this, handler](const Request& request, Response&& response) {
            (this->*handler)(request, std::move(response));
        };
        Rest::Routes::Post(*router_, path,
                           [this, handler](const Rest::Request& request, Response response) {
                               (this->*handler)(request, std::move(response));
                               return Rest::Route::Result::Ok;
                           });
    };
    bind("user-data-send.do", &RestServer::doUserDataSend);
    bind("user-data-get.do", &RestServer::doUserDataInfo);
    bind("user-data-del.do", &RestServer::doUserDataDelete);
    bind("device-fw-update.do", &RestServer::doUpdateFW);
    bind("time-set.do", &RestServer::doSetTime);
    bind("device-set.do", &RestServer::doSetDevice);
    bind("system-set.do", &RestServer::doSetSystem);
    bind("door-open.do", &RestServer::doDoorOpen);
    bind("user-group-info.do", &RestServer::doUserGroupInfo);
    bind("device-status.do", &RestServer::doDeviceStatus);
    bind("run-enroll-mode.do", &RestServer::doRunEnrollMode);
    bind("run-recognize-mode.do", &RestServer::doRunRecognizeMode);
    bind("user-list-get.do", &RestServer::doUserListInfo);
    router_->addCustomHandler([this](const Rest::Request& request, Response response) {
        answerUnknown(request, std::move(response));
        return Rest::Route::Result::Ok;
    });
}

/// What the library would answer by itself would go past the guard.
void RestServer::answerUnknown(const Request& request, Response response) {
    const bool known =
        routes_.count('/' + Rest::SegmentTreeNode::sanitizeResource(request.resource())) > 0;
    if (known)
        response.headers().add<Http::Header::Allow>(Http::Method::Post);
    HttpGuard::send(response, known ? Http::Code::Method_Not_Allowed : Http::Code::Not_Found, "",
                    0);
}

// --- Routes --------------------------------------------------------------------------------

/// Runs @p work, which returns the answer's envelope and data, and answers with that.
template <typename Work>
void RestServer::serve(Response& response, Permission permission, Work work) {
    QByteArray answer;
    try {
        settings_ = host_.settings();
        // What still waits for its turn must not hold the end up: each may wait for a disk or a
        // lock.
        if (stopping_)
            answer = envelope(result::kUnknownError);
        else if (permission == Permission::ManagerControl && settings_.managerControl != 1)
            answer = envelope(result::kNotAllowed);
        else
            answer = work();
    } catch (const std::exception& error) {
        qCWarning(cloudLog, "request not carried out: %s", error.what());
        answer = envelope(result::kUnknownError);
    }
    HttpGuard::send(response, Http::Code::Ok, answer.constData(),
                    static_cast<std::size_t>(answer.size()));
}

/// Hands @p command over to the host; returns the result code to answer.
int RestServer::handOver(int command, const QVariant& parameter) {
    if (gate_ != nullptr && !gate_->admit(costOf(command)))
        return result::kUnknownError;
    host_.parsingRestCommand(command, parameter);
    return result::kSucceed;
}

template <typename Value>
int RestServer::handOver(int command, const Decoded<Value>& decoded) {
    return decoded.ok() ? handOver(command, QVariant::fromValue(decoded.value)) : decoded.code;
}

void RestServer::doUserDataSend(const Request& request, Response response) {
    serve(response, Permission::ManagerControl, [&] {
        const auto sent = user_routes::decodeUserDataSend(bodyOf(request));
        if (sent.ok() && !commandFolder_.writeAdd(sent.value.user, sent.value.picture))
            return envelope(result::kUnknownError);
        return envelope(sent.code);
    });
}

void RestServer::doUserDataInfo(const Request& request, Response response) {
    serve(response, Permission::ManagerControl, [&] {
        return envelope(handOver(kGetUser, user_routes::decodeUserDataGet(bodyOf(request))));
    });
}

void RestServer::doUserDataDelete(const Request& request, Response response) {
    serve(response, Permission::ManagerControl, [&] {
        const auto user = user_routes::decodeUserDataDelete(bodyOf(request));
        if (user.ok() && !commandFolder_.writeDelete(user.value.cardNo))
            return envelope(result::kUnknownError);
        return envelope(user.code);
    });
}

void RestServer::doUpdateFW(const Request& request, Response response) {
    serve(response, Permission::NotNeeded, [&] {
        // Before the settings have come there is nobody to fetch it from.
        if (!Ipv4::isMachine(settings_.network.own.managerAddress[0]))
            return envelope(result::kUnknownError);
        auto order = terminal_routes::decodeFirmwareUpdate(bodyOf(request), getManagerIP());
        if (order.ok() && !FirmwareOrders::keep(order.value))
            return envelope(result::kUnknownError);
        const int code = handOver(kUpdateFirmware, order);
        if (order.ok() && code != result::kSucceed)
            FirmwareOrders::remove(order.value.number);
        return envelope(code);
    });
}

void RestServer::doSetTime(const Request& request, Response response) {
    serve(response, Permission::ManagerControl, [&] {
        return envelope(handOver(kSetTime, terminal_routes::decodeTimeSet(bodyOf(request))));
    });
}

void RestServer::doSetDevice(const Request& request, Response response) {
    serve(response, Permission::NotNeeded, [&] {
        // What is not given is sent on as it is, which nobody may know yet, and to nobody without
        // a controller.
        if (!host_.settingsCurrent())
            return envelope(result::kUnknownError);
        return envelope(handOver(kSetDevice, terminal_routes::decodeDeviceSet(bodyOf(request))));
    });
}

void RestServer::doSetSystem(const Request& request, Response response) {
    serve(response, Permission::NotNeeded, [&] {
        return envelope(handOver(kSetSystem, terminal_routes::decodeSystemSet(bodyOf(request))));
    });
}

void RestServer::doDoorOpen(const Request&, Response response) {
    serve(response, Permission::ManagerControl,
          [&] { return envelope(handOver(kOpenDoor, QVariant())); });
}

void RestServer::doUserGroupInfo(const Request&, Response response) {
    serve(response, Permission::NotNeeded, [&] {
        return envelopeWith(
            {{QStringLiteral("groupInfo"), user_routes::groupInfo(settings_.users)}});
    });
}

void RestServer::doDeviceStatus(const Request&, Response response) {
    serve(response, Permission::NotNeeded, [&] {
        return envelopeWith(terminal_routes::deviceStatus(settings_, QDateTime::currentDateTime()));
    });
}

void RestServer::doRunEnrollMode(const Request& request, Response response) {
    serve(response, Permission::ManagerControl, [&] {
        return envelope(
            handOver(kRunEnrolment, terminal_routes::decodeRunEnrollMode(bodyOf(request))));
    });
}

void RestServer::doRunRecognizeMode(const Request&, Response response) {
    serve(response, Permission::NotNeeded, [&] {
        host_.parsingRestCommand(kRunRecognition, {});
        return envelope(result::kSucceed);
    });
}

void RestServer::doUserListInfo(const Request&, Response response) {
    serve(response, Permission::NotNeeded, [&] {
        host_.parsingRestCommand(kRunRecognition, {});
        UserTable table;
        table.sqlOpen_ex();
        return envelopeWith(
            {{QStringLiteral("userInfo"), user_routes::listInfo(table.sqlGetUserId())}});
    });
}

QString RestServer::getManagerIP() const {
    return Ipv4::dotted(settings_.network.own.managerAddress);
}

// --- Life ----------------------------------------------------------------------------------

void RestServer::start() {
    const SignalsBlocked quiet;
    CommandFolder::removeUnfinished();
    endpoint_->setHandler(std::make_shared<HttpGuard>(routes_, router_, limits_));
    bool complained = false;
    while (!stopping_) {
        try {
            endpoint_->bind();
            qCInfo(cloudLog, "REST server listening on port %d", int(address_.port()));
            endpoint_->serve();
        } catch (const std::exception& error) {
            if (!complained)
                qCWarning(cloudLog,
                          "REST server cannot listen on port %d (%s), trying every second",
                          int(address_.port()), error.what());
            complained = true;
            std::unique_lock<std::mutex> lock(stopLock_);
            stopSignal_.wait_for(lock, kRetryInterval, [this] { return stopping_.load(); });
        }
    }
}

void RestServer::shutdown() {
    {
        const std::lock_guard<std::mutex> lock(stopLock_);
        stopping_ = true;
    }
    stopSignal_.notify_all();
    endpoint_->shutdown();
}

QJsonObject RestServer::getErrCodeJSon(int code) {
    QString result = QString::number(code);
    QString message;
    switch (code) {
        case 0:
        case result::kSucceed:
            result = QStringLiteral("1000");
            message = QStringLiteral("succeed");
            break;
        case result::kNotAllowed:
            message = QStringLiteral("Do not allow manager control");
            break;
        case result::kCardNumberLength:
            message =
                QStringLiteral("check User CardNo Length (Min ~ Max : %1 ~ %2 )").arg(6).arg(11);
            break;
        default:
            result = QStringLiteral("9999");
            message = QStringLiteral("Unknown Error");
    }
    return {{QStringLiteral("resultCode"), result}, {QStringLiteral("resultMessage"), message}};
}
