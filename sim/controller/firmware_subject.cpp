#include <QFile>
#include <QFileInfo>
#include <QLoggingCategory>
#include <QTimer>

#include "link/command_code.h"
#include "link/command_parameters.h"
#include "link/device_message.h"
#include "sim/common/firmware_image.h"
#include "sim/controller/device.h"
#include "sim/controller/subjects.h"
#include "sim/controller/terminal_link.h"

Q_LOGGING_CATEGORY(simFirmwareLog, "zel.sim.firmware", QtInfoMsg)

namespace {

/// From the acceptance of the firmware to the terminal's end, in milliseconds.
constexpr int kInstallTime = 2000;

/// The terminal's program as the controller has it in hand: its firmware, its end and its start.
class FirmwareSubject : public Subject {
 public:
    explicit FirmwareSubject(Device& device) : Subject(device) {
        onRequest(command::UpdateFirmware, [this](const Request&) { takeArchive(); });
        for (const quint16 restart : {command::Reboot, command::FactoryRestart})
            onRequest(restart, [this](const Request&) { restartTerminal(); });
        onRequest(command::Greeting, [this](const Request&) { restarting_ = false; });

        onWord("quit-gui", "ask the terminal's program to end", [this](const QString&) {
            device_.send(command::Quit);
            return done();
        });
        onWord("restart-gui", "end it and have it started again", [this](const QString&) {
            if (!device_.supervises())
                return failed(QStringLiteral("nobody would start it again"));
            restartTerminal();
            return done();
        });
        onWord("terminal", "say whether it is connected, away or restarting",
               [this](const QString&) {
                   return done(restarting_                  ? QStringLiteral("restarting")
                               : device_.link().connected() ? QStringLiteral("connected")
                                                            : QStringLiteral("away"));
               });
        onWord("screen", "say which screen is up, by its name in the terminal's log",
               [this](const QString&) { return screen(); });

        installTimer_.setSingleShot(true);
        installTimer_.setInterval(kInstallTime);
        QObject::connect(&installTimer_, &QTimer::timeout, &installTimer_, [this] { install(); });
        QObject::connect(&device_, &Device::firmwareAccepted, &installTimer_,
                         [this](const QString& file) {
                             if (!device_.supervises())
                                 return;
                             file_ = file;
                             installTimer_.start();
                         });
    }

 private:
    QString archive() const { return device_.dataPath(QStringLiteral("input/zel01.tar.bz2")); }

    void takeArchive() {
        const bool there = QFileInfo::exists(archive());
        device_.send(command::FirmwareUpdateAnswer,
                     there ? command::answer::Done : command::answer::Failed);
        if (there)
            emit device_.firmwareAccepted(archive());
    }

    void install() {
        const QString version = firmware_image::versionOf(file_);
        if (version.isEmpty()) {
            qCWarning(simFirmwareLog, "%s is no firmware", qUtf8Printable(file_));
        } else {
            _gui_menu_ menu = device_.settings();
            setFieldText(menu.firmwareVersion, version);
            device_.setSettings(menu);
            qCInfo(simFirmwareLog, "firmware %s is installed", qUtf8Printable(version));
        }
        // The terminal tells what it finds when it comes up.
        QFile result(device_.dataPath(version.isEmpty() ? QStringLiteral("fw_upgrade_fail")
                                                        : QStringLiteral("fw_upgrade_ok")));
        if (!result.open(QIODevice::WriteOnly))
            qCWarning(simFirmwareLog, "%s cannot be written", qUtf8Printable(result.fileName()));
        if (file_ == archive())
            QFile::remove(file_);
        restartTerminal();
    }

    /// Where nobody starts the terminal again, losing the link has to stand for its end.
    void restartTerminal() {
        if (!device_.supervises()) {
            device_.link().drop();
            return;
        }
        restarting_ = device_.link().connected();
        device_.send(command::Quit);
    }

    QString screen() const {
        // Whoever has started the terminal keeps this file; the two processes share no more.
        QFile file(device_.dataPath(QStringLiteral("sim/screen")));
        const QString title = file.open(QIODevice::ReadOnly)
                                  ? QString::fromUtf8(file.read(100)).trimmed()
                                  : QString();
        return title.isEmpty() ? failed(QStringLiteral("unknown; ./run keeps it from the log"))
                               : done(title);
    }

    QTimer installTimer_;
    QString file_;
    bool restarting_ = false;
};

}  // namespace

std::unique_ptr<Subject> makeFirmwareSubject(Device& device) {
    return std::make_unique<FirmwareSubject>(device);
}
