#include "cloud/rest_client.h"

#include <QJsonDocument>
#include <QList>
#include <QNetworkAccessManager>
#include <QNetworkProxy>
#include <QNetworkReply>
#include <QTimer>
#include <QUuid>
#include <cstring>
#include <utility>

#include "base/device_paths.h"
#include "base/ipv4.h"
#include "cloud/cloud_log.h"
#include "cloud/json_input.h"
#include "cloud/network_helper.h"
#include "cloud/rest_server.h"
#include "link/device_message.h"
#include "link/record_values.h"

namespace {

constexpr unsigned int kServerThreads = 1;
constexpr int kMinSerialLength = 11;
/// The largest answer that is read; those of the service are a few hundred bytes.
constexpr qint64 kMaxAnswer = qint64{64} * 1024;
/// An answer that trickles in forever is as bad as none: a request ends after this many transfer
/// time-outs in any case.
constexpr int kMaxTimeouts = 3;

constexpr int kGood = 1000;
constexpr int kGoodToo = 2003;

const char* const kSendData = "sendData";
/// Why a request was given up here.
const char* const kReason = "reason";
/// Characters of a service's own words in the log.
constexpr int kMaxFault = 200;

RestClass* theInstance = nullptr;
std::mutex runningLock;
QList<int> runningCommandList;

/// What a call says to the service, to be read once. When a connection ends without an answer Qt
/// makes the call again on another, as long as it can have this again; but the service may have
/// done by then what it was asked for.
class CallBody : public QIODevice {
 public:
    CallBody(QByteArray body, QObject* parent) : QIODevice(parent), body_(std::move(body)) {
        open(QIODevice::ReadOnly | QIODevice::Unbuffered);
    }
    qint64 size() const override { return body_.size(); }
    bool reset() override { return false; }

 protected:
    qint64 readData(char* data, qint64 most) override {
        const qint64 count = qMin<qint64>(most, body_.size() - read_);
        std::memcpy(data, body_.constData() + read_, static_cast<std::size_t>(count));
        read_ += count;
        return count;
    }
    qint64 writeData(const char*, qint64) override { return -1; }

 private:
    const QByteArray body_;
    qint64 read_ = 0;
};

bool failed(const QNetworkReply* reply) {
    return reply->error() != QNetworkReply::NoError;
}

ServiceContact::Failure failureOf(const QNetworkReply* reply) {
    using Failure = ServiceContact::Failure;
    switch (reply->error()) {
        case QNetworkReply::ConnectionRefusedError:
        case QNetworkReply::HostNotFoundError:
        case QNetworkReply::TemporaryNetworkFailureError:
        case QNetworkReply::NetworkSessionFailedError:
        case QNetworkReply::UnknownNetworkError:
            return Failure::Refused;
        case QNetworkReply::TimeoutError:
            return Failure::NoAnswer;
        case QNetworkReply::OperationCanceledError:
            return reply->property(kReason).toString().isEmpty() ? Failure::NoAnswer
                                                                 : Failure::WrongAnswer;
        default:
            return Failure::WrongAnswer;
    }
}

bool isGood(int resultCode) {
    return resultCode == kGood || resultCode == kGoodToo;
}

/// Text that may stand in a header: a line break in it would begin a header of its own.
QByteArray headerText(const QString& text) {
    // Not null: a header with a null value is left out of the request.
    QByteArray plain("");
    for (const char byte : text.toUtf8()) {
        if (static_cast<unsigned char>(byte) >= 0x20 && byte != 0x7F)
            plain.append(byte);
    }
    return plain;
}

QString checkText(std::uint32_t word, std::uint32_t fault) {
    return (word & fault) != 0 ? QStringLiteral("BAD") : QStringLiteral("GOOD");
}

}  // namespace

RestClass::RestClass(CloudHost& host, QObject* parent) : QThread(parent), host_(host) {
    theInstance = this;
    connect(this, &RestClass::signalRequestCommand, this, &RestClass::slotSendCommand,
            Qt::QueuedConnection);
}

RestClass::~RestClass() {
    stop();
    wait();
    const std::lock_guard<std::mutex> lock(runningLock);
    runningCommandList.clear();
    theInstance = nullptr;
}

RestClass* RestClass::instance() {
    return theInstance;
}

void RestClass::run() {
    try {
        {
            const std::lock_guard<std::mutex> lock(serverLock_);
            if (stopped_)
                return;
            const Pistache::Port port(DevicePaths::restPort());
            server_ = std::make_unique<RestServer>(Pistache::Address(Pistache::Ipv4::any(), port),
                                                   host_, &gate_);
            server_->init(kServerThreads);
        }
        server_->start();
    } catch (const std::exception& error) {
        qCWarning(cloudLog, "REST server not started: %s", error.what());
    }
    const std::lock_guard<std::mutex> lock(serverLock_);
    server_.reset();
}

void RestClass::stop() {
    const std::lock_guard<std::mutex> lock(serverLock_);
    stopped_ = true;
    if (server_)
        server_->shutdown();
}

int RestClass::SendCommand(int command, const QVariant& data) {
    {
        const std::lock_guard<std::mutex> lock(runningLock);
        if (runningCommandList.contains(command))
            return kSameInProgress;
        runningCommandList.append(command);
    }
    emit signalRequestCommand(QVariant::fromValue(ProcIDX{command, 0, 0, data}));
    return kAccepted;
}

int RestClass::SendCommand(int command, const QVariant& data, int extra) {
    {
        const std::lock_guard<std::mutex> lock(runningLock);
        if (!runningCommandList.isEmpty())
            return kAnyInProgress;
        runningCommandList.append(command);
    }
    emit signalRequestCommand(QVariant::fromValue(ProcIDX{command, extra, 0, data}));
    return kAccepted;
}

void RestClass::slotSendCommand(const QVariant& procIdx) {
    takeSettings();
    const int command = procIdx.value<ProcIDX>().command;
    switch (command) {
        case kConnect:
            return runFR01(procIdx);
        case kConnectionCheck:
            return runFR03(procIdx);
        case kUserInOutLog:
            return runFR21(procIdx);
        case kUserEnroll:
            return runFR35(procIdx);
        case kUserDeleted:
            return runFR36(procIdx);
        default: {
            const std::lock_guard<std::mutex> lock(runningLock);
            runningCommandList.removeAll(command);
        }
    }
}

void RestClass::runFR01(const QVariant& sendData) {
    host_.updateRestConnectStatus(false);
    contact_.tried();
    terminalToken_ = QUuid::createUuid().toString();
    post(QStringLiteral("cloud-service/rest-api/connect"),
         {{QStringLiteral("access_token"), terminalToken_}}, sendData,
         &RestClass::replyFinished_FR01);
}

void RestClass::runFR03(const QVariant& sendData) {
    const std::uint32_t word = host_.selfCheckWord();
    const QJsonObject device{
        {QStringLiteral("checkCamera"), checkText(word, SelfCheckFault::kCamera)},
        {QStringLiteral("checkCard"), checkText(word, SelfCheckFault::kCardReader)},
        {QStringLiteral("coverOpen"),
         (word & SelfCheckFault::kTamper) != 0 ? QStringLiteral("OPEN") : QStringLiteral("CLOSED")},
        {QStringLiteral("checkMemory"), checkText(word, SelfCheckFault::kMemory)},
    };
    post(QStringLiteral("cloud-service/rest-api/connection-check"),
         {{QStringLiteral("deviceInfo"), device}}, sendData, &RestClass::replyFinished_FR03);
}

void RestClass::runFR21(const QVariant& sendData) {
    const auto event = sendData.value<ProcIDX>().data.value<FR21_Parameter>();
    const QJsonObject card{
        {QStringLiteral("cardNo"), event.cardNo},
        {QStringLiteral("cardType"), event.cardType},
        {QStringLiteral("reissueNo"), event.reissueNo},
        {QStringLiteral("nationCd"), QStringLiteral("kr")},
    };
    const QJsonObject infrared{
        {QStringLiteral("authScore"), event.authScore},
        {QStringLiteral("infImg"), event.infImg},
    };
    const QJsonObject info{
        {QStringLiteral("authType"), event.authType},
        {QStringLiteral("inoutMode"), event.inoutMode},
        {QStringLiteral("manageMode"), event.manageMode},
        {QStringLiteral("eventStatusCd"), event.eventStatusCd},
        {QStringLiteral("payNum"), event.payNum},
        {QStringLiteral("authTime"), event.authTime},
        {QStringLiteral("cardInfo"), card},
        {QStringLiteral("faceInfrared"), infrared},
        {QStringLiteral("faceVisible"), QJsonObject{{QStringLiteral("visImg"), event.visImg}}},
    };
    post(QStringLiteral("cloud-service/rest-api/user-inout-log"),
         {{QStringLiteral("inoutInfo"), info}}, sendData, &RestClass::replyFinished_FR21);
}

void RestClass::runFR35(const QVariant& sendData) {
    const auto user = sendData.value<ProcIDX>().data.value<Parameter_UserData>();
    const QJsonObject card{
        {QStringLiteral("cardNo"), user.cardNo},
        {QStringLiteral("cardType"), user.cardType},
        {QStringLiteral("reissueNo"), user.reissueNo},
        {QStringLiteral("nationCd"), user.nationCd},
        {QStringLiteral("cardTemplate"), user.cardTemplate},
    };
    const QJsonObject info{
        {QStringLiteral("userLevel"), user.userLevel},
        {QStringLiteral("authType"), user.authType},
        {QStringLiteral("registTime"), user.registTime},
        {QStringLiteral("cardInfo"), card},
        {QStringLiteral("user"), QJsonObject{{QStringLiteral("name"), user.name}}},
        {QStringLiteral("faceVisible"), QJsonObject{{QStringLiteral("visImg"), user.visImg}}},
        {QStringLiteral("templateFile"), user.templateFile},
        {QStringLiteral("autoEnrollment"), user.autoEnrollment},
        {QStringLiteral("removeUserData"), user.removeUserData},
    };
    post(QStringLiteral("cloud-service/rest-api/user-enroll"), {{QStringLiteral("userInfo"), info}},
         sendData, &RestClass::replyFinished_FR35);
}

void RestClass::runFR36(const QVariant& sendData) {
    const auto user = sendData.value<ProcIDX>().data.value<FR36_Parameter>();
    const QJsonObject info{
        {QStringLiteral("deleteType"), user.deleteType},
        {QStringLiteral("cardInfo"), QJsonObject{{QStringLiteral("cardNo"), user.cardNo}}},
    };
    post(QStringLiteral("cloud-service/rest-api/user-deleted"),
         {{QStringLiteral("userInfo"), info}}, sendData, &RestClass::replyFinished_FR36);
}

void RestClass::runFR51(const QVariant& data) {
    takeSettings();
    const auto visitor = data.value<FR51_Parameter>();
    const QJsonObject infrared{
        {QStringLiteral("authScore"), QStringLiteral("100")},
        {QStringLiteral("infImg"), visitor.infImg},
    };
    const QJsonObject info{
        {QStringLiteral("faceInfrared"), infrared},
        {QStringLiteral("faceVisible"), QJsonObject{{QStringLiteral("visImg"), visitor.visImg}}},
    };
    post(QStringLiteral("cloud-service/rest-api/visitor-call"),
         {{QStringLiteral("inoutInfo"), info}}, data, nullptr);
}

QString RestClass::getManagerIP() const {
    return Ipv4::dotted(settings_.network.own.managerAddress);
}

QString RestClass::getReaderIP() const {
    return NetworkHelper::getIPAddress(QLatin1String(NetworkHelper::kInterface));
}

QString RestClass::getMacAddress() const {
    return NetworkHelper::getMacAddress(QLatin1String(NetworkHelper::kInterface));
}

QString RestClass::getTargetURL() const {
    return QStringLiteral("http://%1:%2/")
        .arg(getManagerIP())
        .arg(settings_.network.own.managerPort);
}

QNetworkRequest RestClass::makeHeaderForm(const QUrl& url) const {
    QString serial = fieldText(settings_.serial);
    if (serial.size() < kMinSerialLength)
        serial = QStringLiteral("KD_5500_") + getMacAddress();

    QNetworkRequest request(url);
    request.setHeader(QNetworkRequest::ContentTypeHeader,
                      QByteArrayLiteral("application/json; charset=utf-8"));
    request.setRawHeader("Packet-Version", "1.0");
    request.setRawHeader("EncoderKey-Version", "0");
    request.setRawHeader("reader_id", QByteArray::number(settings_.setup.deviceNumber));
    request.setRawHeader("serial", headerText(serial));
    request.setRawHeader("cust_id", headerText(fieldText(settings_.customerId)));
    request.setRawHeader("reader_ipport", getReaderIP().toLatin1() + ":80");
    request.setRawHeader("access_token", headerText(serviceToken_));
    // Naming an encoding keeps Qt from unpacking answers, which a few bytes could make huge.
    request.setRawHeader("Accept-Encoding", "identity");
    return request;
}

void RestClass::post(const QString& path, const QJsonObject& body, const QVariant& sendData,
                     ReplySlot replySlot) {
    QNetworkRequest request = makeHeaderForm(QUrl(getTargetURL() + path + QStringLiteral(".do")));
    if (replySlot == &RestClass::replyFinished_FR01)
        request.setRawHeader("access_token", terminalToken_.toLatin1());
    request.setTransferTimeout(transferTimeout_);

    // A manager per request: nothing of an earlier one, a dead connection least of all, lives on.
    auto* const manager = new QNetworkAccessManager(this);
    manager->setProxy(QNetworkProxy::NoProxy);
    connect(manager, &QNetworkAccessManager::finished, this,
            [this, manager, replySlot](QNetworkReply* reply) {
                manager->disconnect(this);
                takeSettings();
                if (!running_.removeOne(reply)) {
                    // Of a service that is no longer the terminal's.
                    if (replySlot != nullptr)
                        SendCompleted(reply->property(kSendData).value<ProcIDX>());
                } else if (replySlot != nullptr) {
                    (this->*replySlot)(reply);
                } else {
                    noteFault(reply, {});
                }
                manager->deleteLater();  // and the reply with it
            });
    QNetworkReply* const reply =
        manager->post(request, new CallBody(QJsonDocument(body).toJson(), manager));
    running_.append(reply);
    reply->setProperty(kSendData, sendData);
    reply->setReadBufferSize(kMaxAnswer + 1);
    const auto giveUp = [reply](const QString& reason) {
        reply->setProperty(kReason, reason);
        reply->abort();
    };
    connect(reply, &QNetworkReply::readyRead, reply, [reply, giveUp] {
        if (reply->bytesAvailable() > kMaxAnswer)
            giveUp(QStringLiteral("the answer is too long"));
    });
    QTimer::singleShot(kMaxTimeouts * transferTimeout_, reply,
                       [giveUp] { giveUp(QStringLiteral("the answer takes too long")); });
}

void RestClass::takeSettings() {
    const QString before = getTargetURL();
    settings_ = host_.settings();
    if (getTargetURL() == before)
        return;
    serviceToken_.clear();
    faults_.clear();
    contact_.forget();
    for (QNetworkReply* const reply : std::exchange(running_, {}))
        reply->abort();
}

RestClass::Answer RestClass::readAnswer(QNetworkReply* reply, const char* mark) {
    using Failure = ServiceContact::Failure;
    Answer answer;
    QString fault;
    if (failed(reply)) {
        answer.failure = failureOf(reply);
    } else {
        answer.object = readJsonObject(reply->readAll()).value_or(QJsonObject());
        const QJsonValue code = answer.object.value(QLatin1String("resultCode"));
        bool ok = code.isDouble();
        answer.resultCode = code.isString() ? code.toString().toInt(&ok) : code.toInt(-1);
        if (!ok)
            answer.resultCode = -1;
        if (answer.resultCode == -1) {
            answer.failure = Failure::WrongAnswer;
            fault = QStringLiteral("the answer holds no result");
        } else if (!isGood(answer.resultCode)) {
            answer.failure = Failure::Result;
            fault = QStringLiteral("answered %1 %2").arg(answer.resultCode).arg(answer.message());
        }
    }
    noteFault(reply, fault, mark);
    return answer;
}

void RestClass::noteContact(const Answer& answer) {
    if (answer.failure == ServiceContact::Failure::None)
        contact_.reached();
    else
        contact_.failed(answer.failure, answer.resultCode, answer.message().left(kMaxFault));
}

void RestClass::noteFault(const QNetworkReply* reply, const QString& fault, const char* mark) {
    QString reason = fault;
    if (failed(reply)) {
        reason = reply->property(kReason).toString();
        if (reason.isEmpty() && reply->error() == QNetworkReply::OperationCanceledError)
            reason = QStringLiteral("no answer in time");
        else if (reason.isEmpty() && reply->error() == QNetworkReply::ContentReSendError)
            reason = QStringLiteral("the connection was closed before a whole answer");
        else if (reason.isEmpty())
            reason = reply->errorString();
    }
    // The calls are made again and again; a line each time would bury everything else.
    const QString call = reply->url().path().section(QLatin1Char('/'), -1);
    if (faults_.value(call) == reason)
        return;
    faults_.insert(call, reason);
    if (!reason.isEmpty())
        qCWarning(cloudLog, "%s%s failed: %s", mark, qUtf8Printable(call),
                  headerText(reason.left(kMaxFault)).constData());
}

void RestClass::replyFinished_FR01(QNetworkReply* reply) {
    auto procIdx = reply->property(kSendData).value<ProcIDX>();
    const Answer answer = readAnswer(reply);
    procIdx.resultCode = answer.resultCode;
    noteContact(answer);
    const bool up = isGood(answer.resultCode);
    if (up) {
        serviceToken_ = answer.object.value(QLatin1String("access_token")).toString();
        const QString time = answer.object.value(QLatin1String("system_time")).toString();
        if (!time.isEmpty()) {
            const int blank = time.indexOf(QLatin1Char(' '));
            const FR01_Parameter parameter{time.left(blank),
                                           blank < 0 ? QString() : time.mid(blank + 1)};
            host_.parsingRestCommand(host_command::kSetTime, QVariant::fromValue(parameter));
        }
    }
    host_.updateRestConnectStatus(up);
    SendCompleted(procIdx);
}

void RestClass::replyFinished_FR03(QNetworkReply* reply) {
    auto procIdx = reply->property(kSendData).value<ProcIDX>();
    const Answer answer = readAnswer(reply);
    procIdx.resultCode = answer.resultCode;
    noteContact(answer);
    if (!isGood(procIdx.resultCode))
        host_.updateRestConnectStatus(false);
    SendCompleted(procIdx);
}

void RestClass::replyFinished_FR21(QNetworkReply* reply) {
    finishReport(reply, "");
}

void RestClass::replyFinished_FR35(QNetworkReply* reply) {
    finishReport(reply, "");
}

void RestClass::replyFinished_FR36(QNetworkReply* reply) {
    finishReport(reply, "ERROR! ");
}

void RestClass::finishReport(QNetworkReply* reply, const char* mark) {
    auto procIdx = reply->property(kSendData).value<ProcIDX>();
    const Answer answer = readAnswer(reply, mark);
    procIdx.resultCode = answer.resultCode;
    // A report that is declined says nothing against the service.
    if (failed(reply) || isGood(answer.resultCode))
        noteContact(answer);
    if (failed(reply))
        host_.updateRestConnectStatus(false);
    SendCompleted(procIdx);
}

void RestClass::SendCompleted(const ProcIDX& procIdx) {
    {
        const std::lock_guard<std::mutex> lock(runningLock);
        runningCommandList.removeAll(procIdx.command);
    }
    host_.completedRestCommand(QVariant::fromValue(procIdx));
    emit signalReplyFinishedCommand(procIdx.command);
}
