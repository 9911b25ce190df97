#include "cloud/command_folder.h"

#include <dirent.h>
#include <fcntl.h>
#include <sys/stat.h>
#include <unistd.h>

#include <QDate>
#include <QDir>
#include <QDirIterator>
#include <QFile>
#include <QFileInfo>
#include <QRegularExpression>
#include <QStringList>
#include <QTime>
#include <cstdio>
#include <memory>
#include <utility>

#include "base/device_folders.h"
#include "base/device_paths.h"
#include "cloud/cloud_log.h"
#include "cloud/disk.h"

namespace {

/// The values in the order of the lines of the ".info" file.
constexpr QString DoReceiveUserData::*kLines[] = {
    &DoReceiveUserData::registTime,   &DoReceiveUserData::authType,
    &DoReceiveUserData::userLevel,    &DoReceiveUserData::sensivity,
    &DoReceiveUserData::timeSchedule, &DoReceiveUserData::restrictTime,
    &DoReceiveUserData::name,         &DoReceiveUserData::cardNo,
    &DoReceiveUserData::cardTemplate, &DoReceiveUserData::cardType,
    &DoReceiveUserData::nationCd,     &DoReceiveUserData::reissueNo,
    &DoReceiveUserData::templateFile,
};

constexpr char kStampFormat[] = "yyMMddhhmmsszzz";
constexpr int kStampLength = 15;
/// The century of the stamps' two-digit years, milliseconds.
constexpr qint64 kFirstStamp = 946684800000;
constexpr qint64 kLastStamp = 4102444799999;
/// More than any command that was ever accepted has.
constexpr qint64 kMaxInfo = qint64{8} * 1024 * 1024;

/// The terminal's wall clock as if it were UTC's: a stamp is what a clock on the wall shows, and
/// only numbers that have neither gaps nor repetitions can be gone on from.
qint64 wallTime(const QDateTime& time) {
    return QDateTime(time.date(), time.time(), Qt::UTC).toMSecsSinceEpoch();
}

std::optional<qint64> stampOf(const QString& name) {
    const auto part = [&name](int at, int length) { return name.midRef(at, length).toInt(); };
    const QDate date(2000 + part(0, 2), part(2, 2), part(4, 2));
    const QTime time(part(6, 2), part(8, 2), part(10, 2), part(12, 3));
    if (!date.isValid() || !time.isValid())
        return std::nullopt;
    return wallTime(QDateTime(date, time, Qt::UTC));
}

/// Matches a command's name, behind a dot where it is not, or no longer, to be taken.
const QRegularExpression& namePattern() {
    static const QRegularExpression pattern(
        QStringLiteral("^(\\.?)([0-9]{15})_(add|del)_([A-Za-z0-9]{1,16})\\z"));
    return pattern;
}

QString hidden(const QString& name) {
    return CommandFolder::directory() + QLatin1Char('.') + name;
}

/// A line break in a value must not shift the lines behind it.
QByteArray escaped(const QString& value) {
    return value.toUtf8().replace('\\', "\\\\").replace('\n', "\\n").replace('\r', "\\r");
}

QString unescaped(const QByteArray& line) {
    QByteArray value;
    for (int i = 0; i < line.size(); ++i) {
        if (line[i] != '\\' || i + 1 == line.size()) {
            value.append(line[i]);
            continue;
        }
        const char code = line[++i];
        value.append(code == 'n' ? '\n' : code == 'r' ? '\r' : code);
    }
    return QString::fromUtf8(value.constData(), value.size());
}

std::optional<DoReceiveUserData> readInfo(const QString& path) {
    QFile file(path);
    if (file.size() > kMaxInfo || !file.open(QIODevice::ReadOnly))
        return std::nullopt;
    QList<QByteArray> lines = file.readAll().split('\n');
    constexpr int kCount = std::size(kLines);
    if (lines.size() != kCount + 1 || !lines.last().isEmpty())
        return std::nullopt;
    DoReceiveUserData user;
    for (int i = 0; i < kCount; ++i)
        user.*kLines[i] = unescaped(lines[i]);
    return user;
}

/// Puts the picture at @p source in the place of @p name in directory(), at one blow. It stays
/// where it is too, so that the command stays whole.
bool placePicture(const QString& source, const QString& name) {
    const QByteArray ready = QFile::encodeName(hidden(name));
    const QByteArray target = QFile::encodeName(CommandFolder::directory() + name);
    QFile::remove(hidden(name));
    const bool there = ::link(QFile::encodeName(source).constData(), ready.constData()) == 0 ||
                       QFile::copy(source, hidden(name));
    const bool placed = there && std::rename(ready.constData(), target.constData()) == 0;
    // It is still there when both were the same picture already.
    QFile::remove(hidden(name));
    return placed;
}

}  // namespace

CommandFolder::CommandFolder(std::function<QDateTime()> now) : now_(std::move(now)) {}

QString CommandFolder::directory() {
    return DevicePaths::at(QLatin1String(DeviceFolders::kImages));
}

void CommandFolder::removeUnfinished() {
    QDirIterator entries(directory(),
                         QDir::AllEntries | QDir::Hidden | QDir::System | QDir::NoDotAndDotDot);
    while (entries.hasNext()) {
        entries.next();
        const QString name = entries.fileName();
        if (name.startsWith(QLatin1Char('.')) && namePattern().match(name).hasMatch() &&
            !Disk::remove(entries.filePath()))
            qCWarning(cloudLog, "%s cannot be removed", qUtf8Printable(entries.filePath()));
    }
}

QString CommandFolder::newName(Kind kind, const QString& cardNo) {
    // Commands are carried out in the order of their names. A clock that is set back, a time zone
    // that changes and a restart must not have a later one overtake an earlier one, or an order to
    // add a user may come after the one to delete it.
    if (!lastStamp_) {
        lastStamp_ = kFirstStamp;
        QDirIterator folders(directory(), QDir::Dirs | QDir::Hidden | QDir::NoDotAndDotDot);
        while (folders.hasNext()) {
            folders.next();
            const QRegularExpressionMatch match = namePattern().match(folders.fileName());
            if (match.hasMatch())
                lastStamp_ = qMax(*lastStamp_, stampOf(match.captured(2)).value_or(0));
        }
    }
    lastStamp_ = qMax(*lastStamp_ + 1, wallTime(now_()));
    if (*lastStamp_ > kLastStamp) {
        lastStamp_.reset();
        return {};
    }
    const QDateTime stamp = QDateTime::fromMSecsSinceEpoch(*lastStamp_, Qt::UTC);
    return stamp.toString(QLatin1String(kStampFormat)) +
           (kind == Kind::Add ? QStringLiteral("_add_") : QStringLiteral("_del_")) + cardNo;
}

bool CommandFolder::hasRoom() {
    if (written_ >= kMaxWaiting)
        written_ = QDir(directory())
                       .entryList(QDir::Dirs | QDir::NoSymLinks | QDir::NoDotAndDotDot)
                       .size();
    return written_++ < kMaxWaiting && Disk::makeFolder(directory());
}

bool CommandFolder::writeAdd(const DoReceiveUserData& user, const QByteArray& picture) {
    if (!hasRoom())
        return false;
    const QString name = newName(Kind::Add, user.cardNo);
    const QString unfinished = hidden(name);
    if (name.isEmpty() || !QDir().mkdir(unfinished))
        return false;
    QByteArray info;
    for (const auto line : kLines)
        info += escaped(user.*line) + '\n';
    const QString file = unfinished + QLatin1Char('/') + user.cardNo;
    // All of it on the disk before the folder gets its final name, so that a power cut leaves no
    // command with half its content.
    const bool whole =
        Disk::writeNew(file + QStringLiteral(".info"), info) &&
        (picture.isEmpty() || Disk::writeNew(file + QStringLiteral(".jpg"), picture)) &&
        Disk::syncFolder(unfinished);
    if (whole && QDir().rename(unfinished, directory() + name))
        return Disk::syncFolder(directory()) || !remove({name, Kind::Add, user.cardNo});
    Disk::remove(unfinished);
    return false;
}

bool CommandFolder::writeDelete(const QString& cardNo) {
    if (!hasRoom())
        return false;
    const QString name = newName(Kind::Delete, cardNo);
    return !name.isEmpty() && QDir().mkdir(directory() + name) &&
           (Disk::syncFolder(directory()) || !remove({name, Kind::Delete, cardNo}));
}

std::optional<CommandFolder::Command> CommandFolder::named(const QString& name) {
    // Most of what lies there are pictures.
    if (name.size() <= kStampLength || name[kStampLength] != QLatin1Char('_'))
        return std::nullopt;
    const QRegularExpressionMatch match = namePattern().match(name);
    if (!match.hasMatch() || !stampOf(name))
        return std::nullopt;
    const bool add = match.capturedRef(3) == QLatin1String("add");
    return Command{name, add ? Kind::Add : Kind::Delete, match.captured(4)};
}

std::optional<DoReceiveUserData> CommandFolder::takeUser(const Command& command) {
    const QDir folder(command.path());
    const auto files = QDir::Files | QDir::NoSymLinks;
    const QStringList infos = folder.entryList({QStringLiteral("*.info")}, files);
    const QStringList pictures = folder.entryList({QStringLiteral("*.jpg")}, files);
    if (infos.size() != 1)
        return std::nullopt;
    std::optional<DoReceiveUserData> user = readInfo(folder.filePath(infos[0]));
    if (!user || user->cardNo != command.cardNo)
        return std::nullopt;
    if (!pictures.isEmpty()) {
        const QString name = command.cardNo + QStringLiteral(".jpg");
        if (placePicture(folder.filePath(pictures[0]), name))
            user->picture = name;
        else
            qCWarning(cloudLog, "%s goes without its picture", qUtf8Printable(command.name));
    }
    return user;
}

bool CommandFolder::isReadable(const Command& command) {
    const QByteArray path = QFile::encodeName(command.path());
    const std::unique_ptr<DIR, int (*)(DIR*)> folder(::opendir(path.constData()), &::closedir);
    if (!folder)
        return false;
    while (const dirent* entry = ::readdir(folder.get())) {
        struct stat status {};
        if (::fstatat(::dirfd(folder.get()), entry->d_name, &status, AT_SYMLINK_NOFOLLOW) != 0)
            return false;
        if (!S_ISREG(status.st_mode))
            continue;
        QFile file(QFile::decodeName(path + '/' + entry->d_name));
        char first = 0;
        if (!file.open(QIODevice::ReadOnly) || file.read(&first, 1) < 0)
            return false;
    }
    return true;
}

bool CommandFolder::remove(const Command& command) {
    // Under another name first: cut short in the middle of its files it would be another command.
    const QString aside = hidden(command.name);
    if (!QDir().rename(command.path(), aside))
        return false;
    if (!Disk::remove(aside))
        qCWarning(cloudLog, "%s cannot be removed and is passed over", qUtf8Printable(aside));
    return true;
}
