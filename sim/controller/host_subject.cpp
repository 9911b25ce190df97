#include <QHostAddress>
#include <QStringList>

#include "link/command_code.h"
#include "link/device_message.h"
#include "sim/controller/device.h"
#include "sim/controller/subjects.h"

namespace {

/// The access controller, as the device controller stands with it.
class HostSubject : public Subject {
 public:
    explicit HostSubject(Device& device) : Subject(device) {
        place(QHostAddress(QStringLiteral("192.168.0.20")), kPort);
        setFieldText(host_.name, QStringLiteral("Main entrance"));
        host_.connected = 1;
        // Behind the counts themselves, which another subject answers with.
        onRequest(command::AskUserCounts, [this](const Request&) { tell(); });
        onWord("host",
               "on|off|ADDRESS PORT NAME: the access controller is (not) reached, or is that",
               [this](const QString& text) { return setHost(text); });
    }

 private:
    static constexpr quint16 kPort = 4070;

    void tell() { device_.sendRecord(command::ConnectionInfo, 0, 0, host_); }

    void place(const QHostAddress& address, quint16 port) {
        const quint32 number = address.toIPv4Address();
        for (int i = 0; i < 4; ++i)
            host_.address[i] = static_cast<quint8>(number >> (24 - 8 * i));
        host_.port = port;
    }

    QString setHost(const QString& text) {
        if (text == QLatin1String("on") || text == QLatin1String("off")) {
            host_.connected = text == QLatin1String("on");
        } else {
            const QHostAddress address(text.section(QLatin1Char(' '), 0, 0));
            bool ok = false;
            const quint16 port = text.section(QLatin1Char(' '), 1, 1).toUShort(&ok);
            if (address.protocol() != QAbstractSocket::IPv4Protocol || !ok)
                return failed(QStringLiteral("expected on, off, or ADDRESS PORT NAME"));
            place(address, port);
            setFieldText(host_.name, text.section(QLatin1Char(' '), 2));
        }
        tell();
        return done();
    }

    HostInfo host_{};
};

}  // namespace

std::unique_ptr<Subject> makeHostSubject(Device& device) {
    return std::make_unique<HostSubject>(device);
}
