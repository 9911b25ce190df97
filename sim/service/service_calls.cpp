#include "sim/service/service_calls.h"

#include <QDateTime>
#include <QJsonDocument>
#include <QLoggingCategory>
#include <QRegularExpression>
#include <QUuid>

#include "sim/common/firmware_image.h"
#include "sim/service/call_text.h"

Q_LOGGING_CATEGORY(simServiceLog, "zel.sim.service", QtInfoMsg)

namespace {

constexpr char kCallPath[] = "/cloud-service/rest-api/";
constexpr char kCallSuffix[] = ".do";

const QLatin1String kSucceed("1000");
const QLatin1String kSucceedToo("2003");
const QLatin1String kUnknownError("9999");

/// The headers by which a terminal says who it is.
constexpr const char* kHeaders[] = {"reader_id", "serial", "cust_id", "reader_ipport",
                                    "access_token"};

constexpr int kFirmwareSize = 1024 * 1024;
constexpr int kFastest = 1000 * 1000 * 1000;

bool isGood(const QString& code) {
    return code == kSucceed || code == kSucceedToo;
}

void print(const HttpMessage& request) {
    QString text =
        QStringLiteral("<- %1 %2")
            .arg(call_text::shortText(request.word(0)), call_text::shortText(request.word(1)));
    QStringList headers;
    for (const char* name : kHeaders) {
        const QByteArray value = request.header(name);
        if (!value.isEmpty())
            headers += QLatin1String(name) + QLatin1Char(' ') + call_text::shortText(value);
    }
    if (!headers.isEmpty())
        text += QStringLiteral("\n       ") + headers.join(QStringLiteral(", "));
    if (!request.body.isEmpty())
        text += QStringLiteral("\n       ") + call_text::shortBody(request.body);
    qCInfo(simServiceLog, "%s", qUtf8Printable(text));
}

}  // namespace

/// What the terminal calls for.
struct ServiceCalls::Call {
    const char* name;
    const char* key;  // of what its body brings
    bool connects;    // and therefore has no token of the service yet
};

const ServiceCalls::Call* ServiceCalls::callAt(const QByteArray& path) {
    static constexpr Call kCalls[] = {
        {"connect", "access_token", true},      {"connection-check", "deviceInfo", false},
        {"user-inout-log", "inoutInfo", false}, {"user-enroll", "userInfo", false},
        {"user-deleted", "userInfo", false},    {"visitor-call", "inoutInfo", false},
    };
    for (const Call& call : kCalls) {
        if (path == QByteArray(kCallPath) + call.name + kCallSuffix)
            return &call;
    }
    return nullptr;
}

ServiceCalls::ServiceCalls(quint16 port, QObject* parent)
    : QObject(parent),
      server_([this](const HttpMessage& request) { return answer(request); }, nullptr),
      token_(QUuid::createUuid().toString(QUuid::WithoutBraces)) {
    const auto feel = [this](Mood mood) {
        return [this, mood](const QString&) {
            mood_ = mood;
            return done();
        };
    };
    onWord("answer",
           "CODE [CALL]: answer every call, or user-inout-log and the like alone, with this code",
           [this](const QString& text) { return setCode(text); });
    onWord("refuse", "answer with an HTTP error", feel(Mood::Refusing));
    onWord("hang", "take requests and answer nothing", feel(Mood::Hanging));
    onWord("garbage", "answer what is not HTTP", feel(Mood::Garbled));
    onWord("away", "close the port and all connections", [this](const QString&) {
        server_.close();
        return done();
    });
    onWord("back", "open the port again", [this](const QString&) { return comeBack(); });
    onWord("slow", "BYTES_PER_SECOND: send the firmware at this speed, 0 for as fast as it goes",
           [this](const QString& text) { return setSlow(text); });
    onWord("normal", "end all of these", [this](const QString&) {
        mood_ = Mood::Normal;
        forcedCode_.clear();
        server_.setSlowSpeed(0);
        return comeBack();
    });

    if (server_.listen(port))
        port_ = server_.port();
}

QString ServiceCalls::firmwarePath(const QString& version) {
    return QStringLiteral("/fw/%1/zel01.tar.bz2").arg(version);
}

QByteArray ServiceCalls::firmware(const QString& version) {
    return firmware_image::make(version, kFirmwareSize);
}

HttpAnswer ServiceCalls::answer(const HttpMessage& request) {
    print(request);
    const QByteArray method = request.word(0);
    const QByteArray path = request.word(1);
    const Call* const call = method == "POST" ? callAt(path) : nullptr;
    const QJsonObject body = QJsonDocument::fromJson(request.body).object();
    if (call != nullptr)
        emit called(QLatin1String(call->name), body);

    if (mood_ != Mood::Normal)
        return misbehave();
    if (call != nullptr) {
        const QByteArray given = QJsonDocument(answerCall(*call, request, body)).toJson();
        qCInfo(simServiceLog, "-> 200 %s", qUtf8Printable(call_text::shortBody(given)));
        return {HttpServer::answer("200 OK", "application/json", given)};
    }
    const QString version = QString::fromLatin1(path).section(QLatin1Char('/'), 2, 2);
    if (method == "GET" && firmware_image::isVersion(version) &&
        path == firmwarePath(version).toLatin1()) {
        const QByteArray archive = firmware(version);
        qCInfo(simServiceLog, "-> 200 the firmware, %d bytes", archive.size());
        return {HttpServer::answer("200 OK", "application/octet-stream", archive), true};
    }
    qCInfo(simServiceLog, "-> 404");
    return {HttpServer::answer("404 Not Found", "", {})};
}

HttpAnswer ServiceCalls::misbehave() const {
    switch (mood_) {
        case Mood::Refusing:
            qCInfo(simServiceLog, "-> 503");
            return {HttpServer::answer("503 Service Unavailable", "", {})};
        case Mood::Garbled:
            qCInfo(simServiceLog, "-> garbage");
            return {QByteArray::fromHex("00ff7b22726573756c") + "\r\n\r\ngarbage {\"resultCode\":",
                    false, true};
        case Mood::Hanging:
        case Mood::Normal:
            break;
    }
    qCInfo(simServiceLog, "-> nothing");
    return {};
}

QJsonObject ServiceCalls::answerCall(const Call& call, const HttpMessage& request,
                                     const QJsonObject& body) const {
    // A terminal that carries another token is not, or no longer, registered.
    const bool registered = call.connects || request.header("access_token") == token_.toLatin1();
    QString code = forcedCode_;
    if (code.isEmpty() || (!forcedCall_.isEmpty() && forcedCall_ != QLatin1String(call.name)))
        code = registered && body.contains(QLatin1String(call.key)) ? kSucceed : kUnknownError;
    QJsonObject answer{
        {QStringLiteral("resultCode"), code},
        {QStringLiteral("resultMessage"),
         isGood(code) ? QStringLiteral("succeed") : QStringLiteral("Unknown Error")}};
    if (call.connects && isGood(code)) {
        answer.insert(QStringLiteral("access_token"), token_);
        answer.insert(QStringLiteral("system_time"),
                      QDateTime::currentDateTime().toString(QStringLiteral("yyyy-MM-dd hh:mm:ss")));
    }
    return answer;
}

QString ServiceCalls::setCode(const QString& text) {
    static const QRegularExpression form(QStringLiteral("^([0-9]{4})( [a-z-]+)?$"));
    const QRegularExpressionMatch match = form.match(text);
    if (!match.hasMatch())
        return failed(QStringLiteral("a result code has four digits"));
    mood_ = Mood::Normal;
    forcedCode_ = match.captured(1);
    forcedCall_ = match.captured(2).trimmed();
    return done();
}

QString ServiceCalls::setSlow(const QString& text) {
    bool ok = false;
    const int speed = text.toInt(&ok);
    if (!ok || speed < 0 || speed > kFastest)
        return failed(QStringLiteral("expected a number of bytes per second"));
    server_.setSlowSpeed(speed);
    return done();
}

QString ServiceCalls::comeBack() {
    if (server_.listening() || server_.listen(port_))
        return done();
    return failed(server_.errorString());
}
