// A device controller in a hundred lines: greets a terminal, has it look for faces, shows it
// somebody whom it knows, and opens the door. docs/integrating.md goes through it.

#include <QCoreApplication>
#include <QTcpServer>
#include <QTcpSocket>
#include <QTimer>
#include <cstdio>

#include "link/command_code.h"
#include "link/command_parameters.h"
#include "link/device_message.h"
#include "link/device_records.h"
#include "link/frame_parser.h"
#include "link/record_values.h"

/// What a terminal needs to know before it can do anything.
_gui_menu_ settings() {
    _gui_menu_ menu{};
    menu.commissioned = 1;
    menu.liveSeconds = 20;
    menu.resultSeconds = 3;
    menu.setup.language = 1;
    menu.setup.doorOpenDuration = 5;
    return menu;
}

class Controller : public QObject {
 public:
    explicit Controller(quint16 port) {
        connect(&server_, &QTcpServer::newConnection, this, [this] { accept(); });
        server_.listen(QHostAddress::LocalHost, port);
    }

 private:
    void accept() {
        // One terminal at a time; who comes last is served, and begins with a frame of its own.
        delete socket_;
        socket_ = server_.nextPendingConnection();
        parser_.reset();
        connect(socket_, &QTcpSocket::readyRead, this, [this] {
            while (socket_->bytesAvailable() > 0)
                parser_.consume(std::size_t(
                    socket_->read(parser_.writePosition(), qint64(parser_.writeSpace()))));
        });
    }

    void send(quint16 code, quint8 p1 = 0, quint16 length = 0, const char* payload = nullptr) {
        std::printf("-> %u %s\n", code, command::name(code, command::Direction::FromController));
        socket_->write(Frame::build(code, p1, 0, length, payload));
    }

    template <class Record>
    void sendRecord(quint16 code, const Record& record) {
        send(code, 0, sizeof record, reinterpret_cast<const char*>(&record));
    }

    void take(quint16 code, quint8 p1) {
        std::printf("<- %u %s\n", code, command::name(code, command::Direction::ToController));
        if (code == command::Greeting) {
            sendRecord(command::Settings, settings());
            send(command::SystemStatus);
            sendRecord(command::SelfCheck, quint32(0));  // no fault
        } else if (code == command::ScreenClosed) {
            send(command::ScreenClosedAnswer, p1);
            // The standby screen is up. Somebody comes near: the terminal is to ask for faces.
            QTimer::singleShot(1000, socket_, [this] { send(command::ShowLiveView); });
        } else if (code == command::RecognitionMode) {
            recognises_ = p1 == command::recognition::On;
        } else if (code == command::CameraRun) {
            if (recognises_ && p1 == command::camera::On)
                QTimer::singleShot(500, socket_, [this] { recognise(); });
        } else if (code == command::OpenDoor) {
            send(command::DoorOpened);  // the management service wants it
        }
    }

    void recognise() {
        sendRecord(command::TrackingBox, TrackedFace{124, 230, 232, 296, FaceState::Recognised, 0});
        RecognitionResult person{};
        setFieldText(person.userId, QStringLiteral("01023456789"));
        setFieldText(person.name, QStringLiteral("Hong Gil-dong"));
        person.authMethod = command::failure::ByFace;
        person.score = 97;
        sendRecord(command::Recognised, person);
        send(command::DoorOpened);  // and the relay, where there is one
    }

    QTcpServer server_;
    QTcpSocket* socket_ = nullptr;
    FrameParser parser_{[this](auto code, auto p1, auto, auto, auto) { take(code, p1); }};
    bool recognises_ = false;
};

int main(int argc, char** argv) {
    QCoreApplication application(argc, argv);
    std::setvbuf(stdout, nullptr, _IOLBF, 0);
    const Controller controller(argc > 1 ? QByteArray(argv[1]).toUShort() : 15150);
    return QCoreApplication::exec();
}
