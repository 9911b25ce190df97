#include <QStringList>

#include "link/command_code.h"
#include "link/frame.h"
#include "link/record_values.h"
#include "sim/controller/device.h"
#include "sim/controller/subjects.h"
#include "sim/controller/terminal_link.h"

namespace {

/// Self-check bits by the words that set them.
constexpr struct {
    const char* word;
    quint32 bit;
} kFaults[] = {{"touch", SelfCheckFault::kTouchPanel},
               {"network", SelfCheckFault::kNetwork},
               {"tamper", SelfCheckFault::kTamper}};

/// Bytes that try a parser's patience without ever being a frame: start marks without link mark,
/// a header that announces more than a frame may have, and plain rubbish.
QByteArray noise() {
    QByteArray bytes = QByteArray::fromHex("c500c5c50102c502c1070000fffffe");
    for (int i = 0; i < 300; ++i)
        bytes.append(static_cast<char>((i * 37 + 11) & 0x7F));
    return bytes;
}

/// Self-check, quitting, and the words that disturb the link.
class SessionSubject : public Subject {
 public:
    explicit SessionSubject(Device& device) : Subject(device) {
        onRequest(command::Greeting, [this](const Request&) { sendSelfCheck(); });
        onRequest(command::ScreenClosed, [this](const Request& request) {
            device_.send(command::ScreenClosedAnswer, request.p1);
        });
        onRequest(command::QuitAcknowledged, [](const Request&) {});

        onWord("fault", "[touch|network|tamper|none...]: show or report the self-check",
               [this](const QString& text) { return setFaults(text); });
        onWord("drop", "close the connection to the terminal", [this](const QString&) {
            device_.link().drop();
            return done();
        });
        onWord("noise", "send bytes that are no frame", [this](const QString&) {
            device_.link().sendRaw(noise());
            return done();
        });
        onWord("split", "toggle: send everything byte by byte", [this](const QString&) {
            TerminalLink& link = device_.link();
            link.setSplit(!link.split());
            return done(link.split() ? QStringLiteral("on") : QStringLiteral("off"));
        });
        onWord("frame", "CODE P1 P2 [HEX]: send any frame",
               [this](const QString& text) { return sendFrame(text); });
        onWord("quit", "end the simulated controller", [this](const QString&) {
            emit device_.quitRequested();
            return done();
        });
        onWord("restart", "start the simulated controller anew, when it was built again",
               [this](const QString&) {
                   emit device_.restartRequested();
                   return done();
               });
    }

    QString stateKey() const override { return QStringLiteral("session"); }

    QJsonObject state() const override {
        return {{QStringLiteral("faults"), static_cast<qint64>(faults_)}};
    }

    void restore(const QJsonObject& state) override {
        faults_ = static_cast<quint32>(state.value(QStringLiteral("faults")).toInt());
    }

 private:
    void sendSelfCheck() { device_.sendRecord(command::SelfCheck, 0, 0, faults_); }

    QString setFaults(const QString& text) {
        quint32 faults = 0;
        const QStringList words = text.split(QLatin1Char(' '), Qt::SkipEmptyParts);
        for (const QString& word : words) {
            quint32 bit = 0;
            for (const auto& fault : kFaults) {
                if (word == QLatin1String(fault.word))
                    bit = fault.bit;
            }
            if (bit == 0 && word != QLatin1String("none"))
                return failed(QStringLiteral("no such fault"));
            faults |= bit;
        }
        if (words.isEmpty())
            return done(faultWords());
        faults_ = faults;
        device_.stateChanged();
        sendSelfCheck();
        return done();
    }

    QString faultWords() const {
        QStringList words;
        for (const auto& fault : kFaults) {
            if ((faults_ & fault.bit) != 0)
                words.append(QLatin1String(fault.word));
        }
        return words.isEmpty() ? QStringLiteral("none") : words.join(QLatin1Char(' '));
    }

    QString sendFrame(const QString& text) {
        const QStringList parts = text.split(QLatin1Char(' '), Qt::SkipEmptyParts);
        bool codeOk = false;
        bool p1Ok = false;
        bool p2Ok = false;
        const quint16 code = parts.value(0).toUShort(&codeOk);
        const uint p1 = parts.value(1).toUInt(&p1Ok);
        const uint p2 = parts.value(2).toUInt(&p2Ok);
        const QByteArray hex = parts.mid(3).join(QString()).toLatin1();
        const QByteArray payload = QByteArray::fromHex(hex);
        if (!codeOk || !p1Ok || !p2Ok || p1 > 255 || p2 > 255)
            return failed(QStringLiteral("expected CODE P1 P2 [HEX]"));
        if (payload.size() * 2 != hex.size())
            return failed(QStringLiteral("the payload is not hexadecimal"));
        if (static_cast<std::size_t>(payload.size()) > Frame::kMaxPayloadSize)
            return failed(QStringLiteral("no frame carries that much"));
        device_.send(code, static_cast<quint8>(p1), static_cast<quint8>(p2), payload);
        return done();
    }

    quint32 faults_ = 0;
};

}  // namespace

std::unique_ptr<Subject> makeSessionSubject(Device& device) {
    return std::make_unique<SessionSubject>(device);
}
