#include <QDir>
#include <QFile>
#include <QFileInfo>
#include <QHash>
#include <QImage>
#include <QImageReader>
#include <QSaveFile>
#include <QTimer>
#include <algorithm>
#include <functional>
#include <limits>
#include <optional>
#include <utility>

#include "base/device_paths.h"
#include "link/command_code.h"
#include "link/command_parameters.h"
#include "link/device_message.h"
#include "link/record_values.h"
#include "sim/common/firmware_image.h"
#include "sim/controller/device.h"
#include "sim/controller/subjects.h"
#include "sim/controller/usb_files.h"

namespace {

enum class Stick { Out, NoFolder, In };

namespace stick = command::stick;
namespace transfer = command::transfer;

constexpr int kMountTime = 300;  // milliseconds
constexpr int kPace = 200;       // milliseconds between two reports of progress
constexpr int kSteps = 10;       // reports of progress from 0 to 100 percent

const QString kFolder = QStringLiteral("/mnt/usb/ZEL01");

QString fileName(const char* what, const QDateTime& time) {
    return QLatin1String(what) + time.toString(QStringLiteral("_yyyyMMdd_HHmmss")) +
           QStringLiteral(".dat");
}

/// Where the file of that device path lies on this machine; nothing for one that is not on the
/// stick.
std::optional<QString> stickFile(const QByteArray& devicePath) {
    const QString path = QString::fromLatin1(devicePath);
    if (QDir::cleanPath(path) != path || !path.startsWith(kFolder + QLatin1Char('/')))
        return {};
    return DevicePaths::at(path);
}

bool write(const QString& path, const QByteArray& bytes) {
    QSaveFile file(path);
    return file.open(QIODevice::WriteOnly) && file.write(bytes) == bytes.size() && file.commit();
}

/// A stick that comes and goes, what is copied to it and from it, and the firmware on it.
class UsbSubject : public Subject {
 public:
    explicit UsbSubject(Device& device) : Subject(device) {
        onRequest(command::UsbMount, [this](const Request& request) {
            if (request.p1 == stick::Mount)
                mount();
            else
                reportPresence();
        });
        onRequest(command::UsbExport, [this](const Request& request) { beginExport(request); });
        onRequest(command::UsbImport, [this](const Request& request) { beginImport(request); });
        onRequest(command::UsbImportFile, [this](const Request& request) {
            const QByteArray path = request.payload;
            begin({command::FirmwareProgress, 0, 0, nextUpgrade_, [this, path]() -> quint8 {
                       if (!readable(path))
                           return transfer::UpgradeFailed;
                       emit device_.firmwareAccepted(*stickFile(path));
                       return transfer::Done;
                   }});
        });
        onWord("usb",
               "in|out|nofolder: the stick; export|import|firmware N: how the next one ends; pace "
               "MS: time until a mount and between two reports of progress",
               [this](const QString& text) { return usb(text); });

        mountTimer_.setSingleShot(true);
        mountTimer_.setInterval(kMountTime);
        QObject::connect(&mountTimer_, &QTimer::timeout, &mountTimer_, [this] {
            if (stick_ != Stick::Out)
                device_.send(command::UsbState, stick::Mounted, stick_ == Stick::In ? 1 : 0);
        });
        progressTimer_.setInterval(kPace);
        QObject::connect(&progressTimer_, &QTimer::timeout, &progressTimer_, [this] { step(); });
    }

    QString stateKey() const override { return QStringLiteral("usb"); }

    QJsonObject state() const override {
        return {{QStringLiteral("in"), stick_ == Stick::In},
                {QStringLiteral("noFolder"), stick_ == Stick::NoFolder}};
    }

    void restore(const QJsonObject& state) override {
        if (state.value(QStringLiteral("noFolder")).toBool())
            stick_ = Stick::NoFolder;
        else if (state.value(QStringLiteral("in")).toBool() &&
                 QFileInfo(DevicePaths::at(kFolder)).isDir())
            stick_ = Stick::In;
    }

 private:
    /// An export, an import or an upgrade.
    struct Job {
        quint16 report;
        quint8 kind;
        quint16 progress;                // 0: the report itself tells it
        std::optional<quint8>& instead;  // the result it has without being done
        std::function<quint8()> carryOut;
    };

    // --- The stick -------------------------------------------------------------------------

    void mount() {
        device_.send(command::UsbState, stick::Mounting);
        mountTimer_.start();
    }

    void reportPresence() {
        if (stick_ == Stick::Out)
            device_.send(command::UsbState, stick::Gone);
        else
            device_.send(command::UsbState, stick::Present, stick_ == Stick::In ? 1 : 0);
    }

    /// What is on a stick goes with it.
    QString setStick(Stick stick) {
        const QString mounted = DevicePaths::at(kFolder);
        const QString away = device_.dataPath(QStringLiteral("sim/stick"));
        if (stick == Stick::In && !QFileInfo::exists(mounted)) {
            QDir().mkpath(QFileInfo(mounted).path());
            if (QFileInfo::exists(away) ? !QDir().rename(away, mounted) : !fill(mounted))
                return failed(QStringLiteral("cannot make ") + mounted);
        } else if (stick != Stick::In && stick_ == Stick::In && !QDir().rename(mounted, away)) {
            return failed(QStringLiteral("cannot move ") + mounted);
        }
        stick_ = stick;
        device_.stateChanged();
        // One that comes is mounted at once.
        if (stick_ == Stick::In)
            device_.send(command::UsbState, stick::Mounted, 1);
        else
            reportPresence();
        return done();
    }

    /// A stick as one might have it.
    bool fill(const QString& folder) {
        QDir stick(folder);
        if (!stick.mkpath(QStringLiteral("backup")) || !stick.mkpath(QStringLiteral("images")))
            return false;
        QImage background(480, 800, QImage::Format_RGB32);
        background.fill(QColor(0x1f, 0x4e, 0x5f));
        QImage logo(240, 72, QImage::Format_RGB32);
        logo.fill(QColor(0xe8, 0xa3, 0x3d));
        return write(stick.filePath(QStringLiteral("user_20260301.dat")), users()) &&
               write(stick.filePath(QStringLiteral("settings_20260301.dat")), settings()) &&
               write(stick.filePath(QStringLiteral("backup/all_20260228.dat")), everything()) &&
               write(stick.filePath(QStringLiteral("card_key.dat")), QByteArray(32, 'K')) &&
               write(stick.filePath(QStringLiteral("firmware_1.1.0.bin")),
                     firmware_image::make(QLatin1String(firmware_image::kNewVersion), 4096)) &&
               background.save(stick.filePath(QStringLiteral("images/background.png"))) &&
               logo.save(stick.filePath(QStringLiteral("images/logo.png")));
    }

    QString usb(const QString& text) {
        const QString word = text.section(QLatin1Char(' '), 0, 0);
        if (text == QLatin1String("in"))
            return setStick(Stick::In);
        if (text == QLatin1String("out"))
            return setStick(Stick::Out);
        if (text == QLatin1String("nofolder"))
            return setStick(Stick::NoFolder);
        bool ok = false;
        const quint16 number = text.section(QLatin1Char(' '), 1).toUShort(&ok);
        if (ok && word == QLatin1String("pace")) {
            mountTimer_.setInterval(number);
            progressTimer_.setInterval(number);
            return done();
        }
        if (ok && number <= std::numeric_limits<quint8>::max()) {
            const auto result = static_cast<quint8>(number);
            if (word == QLatin1String("export"))
                nextExport_ = result;
            else if (word == QLatin1String("import"))
                nextImport_ = result;
            else if (word == QLatin1String("firmware"))
                nextUpgrade_ = result;
            else
                ok = false;
        }
        return ok ? done()
                  : failed(QStringLiteral("expected in|out|nofolder|export N|import N|firmware N|"
                                          "pace MS"));
    }

    // --- Jobs, one at a time ---------------------------------------------------------------

    void begin(const Job& job) {
        if (job_)
            return;
        job_.emplace(job);
        step_ = 0;
        if (stick_ != Stick::In) {
            end(transfer::NoStick);
            return;
        }
        if (job.progress != 0)
            device_.send(job.report, job.kind, transfer::Running);
        progressTimer_.start();
    }

    void end(quint8 result) {
        progressTimer_.stop();
        const Job job = *job_;
        job_.reset();
        if (job.progress == 0)
            device_.send(job.report, result);
        else
            device_.send(job.report, job.kind, result);
    }

    void step() {
        if (stick_ != Stick::In) {
            end(transfer::NoStick);
            return;
        }
        const auto percent = static_cast<quint8>(qBound(0, step_ - 1, kSteps) * 100 / kSteps);
        if (step_ == kSteps + 2) {
            const std::optional<quint8> instead = std::exchange(job_->instead, {});
            end(instead ? *instead : job_->carryOut());
            return;
        }
        if (job_->progress == 0)
            device_.send(job_->report, transfer::Running, percent);
        else
            device_.send(job_->progress, phase(), percent);
        ++step_;
    }

    /// Preparing, copying and completing are numbered differently by the two reports.
    quint8 phase() const {
        if (job_->progress == command::UsbSending)
            return step_ == 0 ? transfer::PreparingToSend : transfer::Sending;
        return step_ == 0        ? transfer::Preparing
               : step_ <= kSteps ? transfer::Copying
                                 : transfer::Completing;
    }

    // --- Exports ---------------------------------------------------------------------------

    void beginExport(const Request& request) {
        const quint8 kind = request.p1;
        const auto dates = request.record<ExportDates>();
        const bool someDays = kind == transfer::LogsOfDays && request.p2 == transfer::SomeDays;
        const auto carryOut = [this, kind, dates, someDays]() -> quint8 {
            if (someDays && !dates)
                return transfer::NotExported;
            switch (kind) {
                case transfer::Logs:
                case transfer::LogsOfDays:
                    return put("log", logs(someDays ? dates : std::nullopt));
                case transfer::Users:
                    return put("user", users());
                case transfer::Settings:
                    return put("settings", settings());
                case transfer::Everything:
                    return put("all", everything());
                default:
                    return transfer::NotExported;
            }
        };
        begin({command::UsbExported, kind, command::UsbProgress, nextExport_, carryOut});
    }

    quint8 put(const char* what, const QByteArray& bytes) {
        const QString path =
            DevicePaths::at(kFolder) + QLatin1Char('/') + fileName(what, device_.now());
        return write(path, bytes) ? transfer::Done : transfer::NotExported;
    }

    QByteArray logs(const std::optional<ExportDates>& dates) {
        QVector<GUI_LOGDATA> logs = device_.logs().newest(std::numeric_limits<int>::max());
        if (dates) {
            const QDate from(2000 + dates->fromYear, dates->fromMonth, dates->fromDay);
            const QDate to(2000 + dates->toYear, dates->toMonth, dates->toDay);
            QVector<GUI_LOGDATA> some;
            for (const GUI_LOGDATA& log : qAsConst(logs)) {
                const QDate day = logTime(log).date();
                if (day >= from && day <= to)
                    some.append(log);
            }
            logs = some;
        }
        return usb_files::section(usb_files::Logs, logs);
    }

    QByteArray users() { return usb_files::section(usb_files::Users, device_.users().users()); }

    QByteArray settings() const {
        return usb_files::section(usb_files::Settings, QVector<_gui_menu_>(1, device_.settings()));
    }

    QByteArray everything() { return settings() + users() + logs({}); }

    // --- Imports ---------------------------------------------------------------------------

    void beginImport(const Request& request) {
        const quint8 kind = request.p1;
        const QByteArray path = request.payload;
        const quint16 progress =
            kind == transfer::Users ? command::UsbSending : command::UsbProgress;
        begin({command::UsbImported, kind, progress, nextImport_,
               [this, kind, path] { return take(kind, path); }});
    }

    static bool readable(const QByteArray& path) {
        const auto file = stickFile(path);
        return file && QFileInfo(*file).isFile() && QFileInfo(*file).size() > 0 &&
               QFileInfo(*file).size() <= usb_files::kMaxFile;
    }

    quint8 take(quint8 kind, const QByteArray& path) {
        if (!readable(path))
            return transfer::NoValidFile;
        const QString name = *stickFile(path);
        switch (kind) {
            case transfer::Background:
                return takePicture(name, device_.dataPath(QStringLiteral("Images/usb")));
            case transfer::Logo:
                return takePicture(name, device_.dataPath(QStringLiteral("Images/logo")));
            case transfer::CardKeys:
                return transfer::Done;
            default:
                break;
        }
        QFile file(name);
        if (!file.open(QIODevice::ReadOnly))
            return transfer::NoValidFile;
        QByteArray bytes = file.readAll();
        std::optional<QVector<_gui_menu_>> settings;
        std::optional<QVector<_gui_user_>> users;
        std::optional<QVector<GUI_LOGDATA>> logs;
        if (kind == transfer::Settings || kind == transfer::Everything)
            settings = usb_files::take<_gui_menu_>(usb_files::Settings, bytes);
        if (kind == transfer::Users || kind == transfer::Everything)
            users = usb_files::take<_gui_user_>(usb_files::Users, bytes);
        if (kind == transfer::Logs || kind == transfer::Everything)
            logs = usb_files::take<GUI_LOGDATA>(usb_files::Logs, bytes);
        if (!bytes.isEmpty() || (kind == transfer::Everything && !(settings && users && logs)) ||
            !(settings || users || logs) || (settings && settings->size() != 1))
            return transfer::InvalidData;
        if (const quint8 tooMany = users ? overflow(*users) : quint8(transfer::Done))
            return tooMany;
        takeRecords(users, logs);
        if (settings) {
            _gui_menu_ menu = settings->first();
            menu.users = device_.users().counts();
            device_.setSettings(menu);
            device_.sendRecord(command::SettingsChanged, 0, 0, menu);
        }
        return transfer::Done;
    }

    /// What keeps @p added from being taken in beside those that are there.
    quint8 overflow(const QVector<_gui_user_>& added) {
        QHash<QString, quint8> levels;
        for (const QVector<_gui_user_>& users : {device_.users().users(), added})
            for (const _gui_user_& user : users)
                levels.insert(fieldText(user.userId), user.level);
        const auto administrators =
            std::count(levels.begin(), levels.end(), quint8(UserLevel::Administrator));
        if (quint32(levels.size()) > UserStore::kMostUsers)
            return transfer::TooManyUsers;
        return administrators > int(UserStore::kMostAdministrators)
                   ? transfer::TooManyAdministrators
                   : transfer::Done;
    }

    void takeRecords(const std::optional<QVector<_gui_user_>>& users,
                     const std::optional<QVector<GUI_LOGDATA>>& logs) {
        if (users) {
            for (const _gui_user_& user : *users)
                device_.users().store(user);
            device_.usersChanged();
        }
        if (logs) {
            device_.logs().removeAll();
            for (auto log = logs->crbegin(); log != logs->crend(); ++log)
                device_.logs().add(*log, true);
            emit device_.statusChanged();
        }
    }

    static quint8 takePicture(const QString& name, const QString& folder) {
        QImageReader reader(name);
        reader.setDecideFormatFromContent(true);
        if (!reader.canRead())
            return transfer::InvalidData;
        QDir().mkpath(folder);
        const QString copy = folder + QLatin1Char('/') + QFileInfo(name).fileName();
        QFile::remove(copy);
        return QFile::copy(name, copy) ? transfer::Done : transfer::NoValidFile;
    }

    Stick stick_ = Stick::Out;
    std::optional<Job> job_;
    int step_ = 0;
    std::optional<quint8> nextExport_;
    std::optional<quint8> nextImport_;
    std::optional<quint8> nextUpgrade_;
    QTimer mountTimer_;
    QTimer progressTimer_;
};

}  // namespace

std::unique_ptr<Subject> makeUsbSubject(Device& device) {
    return std::make_unique<UsbSubject>(device);
}
