#include "sim/service/terminal_orders.h"

#include <QDateTime>
#include <QDeadlineTimer>
#include <QJsonDocument>
#include <QLoggingCategory>
#include <QNetworkProxy>
#include <QStringList>
#include <QTcpSocket>

#include "sim/common/firmware_image.h"
#include "sim/common/portrait.h"
#include "sim/service/http_message.h"
#include "sim/service/service_calls.h"

Q_LOGGING_CATEGORY(simOrdersLog, "zel.sim.orders", QtInfoMsg)

namespace {

const QLatin1String kSucceed("1000");

/// What follows the first word of @p text.
QString rest(const QString& text) {
    return text.section(QLatin1Char(' '), 1).trimmed();
}

QJsonObject cardInfo(const QString& cardNumber) {
    return {{QStringLiteral("cardNo"), cardNumber}};
}

/// The body that names a user by its card number.
QJsonObject userOf(const QString& cardNumber) {
    return {{QStringLiteral("userInfo"),
             QJsonObject{{QStringLiteral("cardInfo"), cardInfo(cardNumber)}}}};
}

/// What both orders that bring a user say of it.
QJsonObject userInfo(const QString& cardNumber, const QString& name) {
    QJsonObject card = cardInfo(cardNumber);
    card.insert(QStringLiteral("cardTemplate"), cardNumber);
    return {
        {QStringLiteral("cardInfo"), card},
        {QStringLiteral("user"), QJsonObject{{QStringLiteral("name"), name}}},
        {QStringLiteral("authType"), QStringLiteral("2")},
        {QStringLiteral("userLevel"), QStringLiteral("1")},
        {QStringLiteral("sensivity"), QStringLiteral("3")},
    };
}

/// @p value inside of objects, one per part of the dotted @p path.
QJsonObject nested(const QString& path, const QJsonValue& value) {
    const QString key = path.section(QLatin1Char('.'), 0, 0);
    const QString inner = path.section(QLatin1Char('.'), 1);
    return {{key, inner.isEmpty() ? value : QJsonValue(nested(inner, value))}};
}

/// The answer of the terminal as that of a word: its data, then its result.
QString answerText(const HttpMessage& answer) {
    const QJsonDocument document = QJsonDocument::fromJson(answer.body);
    if (answer.word(1) != "200" || !document.isObject())
        return WordSet::failed(QStringLiteral("the terminal answers ") +
                               QString::fromLatin1(answer.startLine));
    QJsonObject data = document.object();
    const QString code = data.take(QLatin1String("resultCode")).toString();
    const QString result =
        code + QLatin1Char(' ') + data.take(QLatin1String("resultMessage")).toString();
    if (code != kSucceed)
        return WordSet::failed(result);
    const QByteArray lines = data.isEmpty() ? QByteArray() : QJsonDocument(data).toJson();
    return QString::fromUtf8(lines) + WordSet::done(result);
}

}  // namespace

TerminalOrders::TerminalOrders(const TerminalAddress& terminal, quint16 firmwarePort)
    : terminal_(terminal), firmwarePort_(firmwarePort) {
    onRoute("door", "door-open.do", "open the door");
    onRoute("users", "user-list-get.do", "list the terminal's users");
    onRoute("groups", "user-group-info.do", "count them");
    onRoute("status", "device-status.do", "show the terminal's versions and settings");
    onRoute("recognise", "run-recognize-mode.do", "return to recognition");
    onWord("time", "[YYYY-MM-DD HH:MM:SS]: set the clock, or set it right",
           [this](const QString& text) { return setTime(text); });
    onWord("get", "CARDNO: have the terminal report a user", [this](const QString& text) {
        return post(QStringLiteral("user-data-get.do"), userOf(text));
    });
    onWord("add", "CARDNO NAME: add a user, with a picture",
           [this](const QString& text) { return addUser(text); });
    onWord("delete", "CARDNO: delete a user", [this](const QString& text) {
        return post(QStringLiteral("user-data-del.do"), userOf(text));
    });
    onWord("enrol", "CARDNO NAME: have a user enrolled at the terminal",
           [this](const QString& text) { return enrolUser(text); });
    onWord("set", "KEY VALUE: change a setting, as in: set Environment.ScreenSettings.Brightness 5",
           [this](const QString& text) { return setDevice(text); });
    onWord("system", "ACTION: for example deleteLogData", [this](const QString& text) {
        return post(QStringLiteral("system-set.do"), QJsonObject{{QStringLiteral("system"), text}});
    });
    onWord("reboot", "restart the terminal", [this](const QString&) {
        return post(QStringLiteral("system-set.do"),
                    QJsonObject{{QStringLiteral("system"), QStringLiteral("rebootDevice")}});
    });
    onWord("firmware", "[VERSION]: have the terminal fetch and install the firmware",
           [this](const QString& text) { return updateFirmware(text); });
    onWord("post", "ROUTE [BODY]: send anything, as in: post time-set.do {}",
           [this](const QString& text) {
               return post(text.section(QLatin1Char(' '), 0, 0), rest(text).toUtf8());
           });
}

void TerminalOrders::onRoute(const char* word, const char* route, const char* usage) {
    onWord(word, usage,
           [this, route](const QString&) { return post(QLatin1String(route), QByteArray()); });
}

QString TerminalOrders::post(const QString& route, const QJsonObject& body) const {
    return post(route, QJsonDocument(body).toJson());
}

QString TerminalOrders::post(const QString& route, const QByteArray& body) const {
    const QString answer = exchange(route, body);
    qCInfo(simOrdersLog, "-> POST %s\n<- %s", qUtf8Printable(route),
           qUtf8Printable(answer.section(QLatin1Char('\n'), -1)));
    return answer;
}

QString TerminalOrders::exchange(const QString& route, const QByteArray& body) const {
    const QDeadlineTimer deadline(kPatience);
    QTcpSocket socket;
    socket.setProxy(QNetworkProxy::NoProxy);
    socket.connectToHost(terminal_.host, terminal_.port);
    if (!socket.waitForConnected(kPatience))
        return failed(QStringLiteral("no terminal at %1:%2: %3")
                          .arg(terminal_.host)
                          .arg(terminal_.port)
                          .arg(socket.errorString()));
    socket.write("POST /cloud-service/rest-api/" + route.toUtf8() +
                 " HTTP/1.1\r\nHost: " + terminal_.host.toUtf8() +
                 "\r\nContent-Type: application/json\r\nContent-Length: " +
                 QByteArray::number(body.size()) + "\r\nConnection: close\r\n\r\n" + body);

    HttpMessageReader reader;
    HttpMessageReader::State state = HttpMessageReader::State::Incomplete;
    while (state == HttpMessageReader::State::Incomplete) {
        if (!socket.waitForReadyRead(static_cast<int>(deadline.remainingTime())))
            return failed(QStringLiteral("the terminal does not answer: ") + socket.errorString());
        state = reader.feed(socket.readAll());
    }
    if (state == HttpMessageReader::State::Broken)
        return failed(QStringLiteral("the terminal's answer is not HTTP"));
    return answerText(reader.message());
}

QString TerminalOrders::setTime(const QString& text) const {
    QString date = text.section(QLatin1Char(' '), 0, 0);
    QString time = rest(text);
    if (text.isEmpty()) {
        const QDateTime now = QDateTime::currentDateTime();
        date = now.toString(QStringLiteral("yyyy-MM-dd"));
        time = now.toString(QStringLiteral("hh:mm:ss"));
    }
    const QJsonObject settings{{QStringLiteral("Date"), date}, {QStringLiteral("Time"), time}};
    return post(QStringLiteral("time-set.do"),
                QJsonObject{{QStringLiteral("TimeSettings"), settings}});
}

QString TerminalOrders::addUser(const QString& text) const {
    const QString cardNumber = text.section(QLatin1Char(' '), 0, 0);
    QJsonObject info = userInfo(cardNumber, rest(text));
    info.insert(QStringLiteral("registTime"),
                QDateTime::currentDateTime().toString(QStringLiteral("yyyy-MM-dd hh:mm:ss")));
    const QByteArray picture = portrait::jpeg(cardNumber.right(1).toInt());
    info.insert(QStringLiteral("faceVisible"),
                QJsonObject{{QStringLiteral("visImg"), QString::fromLatin1(picture.toBase64())}});
    return post(QStringLiteral("user-data-send.do"),
                QJsonObject{{QStringLiteral("userInfo"), info}});
}

QString TerminalOrders::enrolUser(const QString& text) const {
    const QJsonObject info = userInfo(text.section(QLatin1Char(' '), 0, 0), rest(text));
    return post(QStringLiteral("run-enroll-mode.do"),
                QJsonObject{{QStringLiteral("userInfo"), info}});
}

QString TerminalOrders::setDevice(const QString& text) const {
    const QString path = QStringLiteral("DeviceSettings.") + text.section(QLatin1Char(' '), 0, 0);
    return post(QStringLiteral("device-set.do"), nested(path, rest(text)));
}

QString TerminalOrders::updateFirmware(const QString& text) const {
    const QString version =
        text.isEmpty() ? QString::fromLatin1(firmware_image::kNewVersion) : text;
    if (!firmware_image::isVersion(version))
        return failed(QStringLiteral("a version has up to 15 letters, digits and dots"));
    return post(
        QStringLiteral("device-fw-update.do"),
        QJsonObject{
            {QStringLiteral("firmwareType"), QStringLiteral("main")},
            {QStringLiteral("version"), version},
            {QStringLiteral("firmFile"),
             QStringLiteral(":%1%2").arg(firmwarePort_).arg(ServiceCalls::firmwarePath(version))}});
}
