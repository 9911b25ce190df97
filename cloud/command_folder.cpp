#include "cloud/command_folder.h"

#include <unistd.h>

#include <QDateTime>
#include <QDir>
#include <QDirIterator>
#include <QFile>
#include <QRegularExpression>
#include <QStringList>

#include "base/device_folders.h"
#include "base/device_paths.h"

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

const QRegularExpression& namePattern() {
    static const QRegularExpression pattern(
        QStringLiteral("^(\\.?)[0-9]{15}_(add|del)_([A-Za-z0-9]{1,16})\\z"));
    return pattern;
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

/// On the disk before the folder gets its final name, so that a power cut leaves no command with
/// half its content.
bool writeFile(const QString& path, const QByteArray& content) {
    QFile file(path);
    return file.open(QIODevice::WriteOnly | QIODevice::NewOnly) &&
           file.write(content) == content.size() && file.flush() && ::fsync(file.handle()) == 0;
}

std::optional<DoReceiveUserData> readInfo(const QString& path) {
    QFile file(path);
    if (!file.open(QIODevice::ReadOnly))
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

}  // namespace

QString CommandFolder::directory() {
    return DevicePaths::at(QLatin1String(DeviceFolders::kImages));
}

void CommandFolder::removeUnfinished() {
    QDirIterator folders(directory(), QDir::Dirs | QDir::Hidden | QDir::NoDotAndDotDot);
    while (folders.hasNext()) {
        folders.next();
        const QRegularExpressionMatch match = namePattern().match(folders.fileName());
        if (match.hasMatch() && !match.captured(1).isEmpty())
            QDir(folders.filePath()).removeRecursively();
    }
}

QString CommandFolder::newName(Kind kind, const QString& cardNo) {
    // Never the same stamp twice, and never an earlier one after the clock was set back: the
    // folders are carried out in the order of their names.
    lastStamp_ = qMax(lastStamp_ + 1, QDateTime::currentMSecsSinceEpoch());
    return QDateTime::fromMSecsSinceEpoch(lastStamp_).toString(QStringLiteral("yyMMddhhmmsszzz")) +
           (kind == Kind::Add ? QStringLiteral("_add_") : QStringLiteral("_del_")) + cardNo;
}

bool CommandFolder::hasRoom() {
    if (written_ >= kMaxWaiting)
        written_ = QDir(directory()).entryList(QDir::Dirs | QDir::NoDotAndDotDot).size();
    return written_++ < kMaxWaiting;
}

bool CommandFolder::writeAdd(const DoReceiveUserData& user, const QByteArray& picture) {
    if (!hasRoom())
        return false;
    const QString name = newName(Kind::Add, user.cardNo);
    const QString hidden = directory() + QLatin1Char('.') + name;
    QByteArray info;
    for (const auto line : kLines)
        info += escaped(user.*line) + '\n';
    const QString file = hidden + QLatin1Char('/') + user.cardNo;
    const bool written = QDir().mkpath(hidden) && writeFile(file + QStringLiteral(".info"), info) &&
                         (picture.isEmpty() || writeFile(file + QStringLiteral(".jpg"), picture)) &&
                         QDir().rename(hidden, directory() + name);
    if (!written)
        QDir(hidden).removeRecursively();
    return written;
}

bool CommandFolder::writeDelete(const QString& cardNo) {
    return hasRoom() && QDir().mkpath(directory() + newName(Kind::Delete, cardNo));
}

std::optional<CommandFolder::Command> CommandFolder::oldest() {
    QString first;
    Command command;
    QDirIterator folders(directory(), QDir::Dirs | QDir::NoDotAndDotDot);
    while (folders.hasNext()) {
        folders.next();
        const QString name = folders.fileName();
        const QRegularExpressionMatch match = namePattern().match(name);
        if (!match.hasMatch() || (!first.isEmpty() && first < name))
            continue;
        first = name;
        command.path = folders.filePath();
        command.kind = match.captured(2) == QLatin1String("add") ? Kind::Add : Kind::Delete;
        command.cardNo = match.captured(3);
    }
    if (first.isEmpty())
        return std::nullopt;
    return command;
}

std::optional<DoReceiveUserData> CommandFolder::takeUser(const Command& command) {
    const QDir folder(command.path);
    const QStringList infos = folder.entryList({QStringLiteral("*.info")}, QDir::Files);
    const QStringList pictures = folder.entryList({QStringLiteral("*.jpg")}, QDir::Files);
    if (infos.size() != 1)
        return std::nullopt;
    std::optional<DoReceiveUserData> user = readInfo(folder.filePath(infos[0]));
    if (!user || user->cardNo != command.cardNo)
        return std::nullopt;
    if (!pictures.isEmpty()) {
        // The controller takes the picture from there; a later one of the same user replaces it.
        // A link, so that the command stays whole until the folder goes.
        user->picture = command.cardNo + QStringLiteral(".jpg");
        const QString source = folder.filePath(pictures[0]);
        const QString target = directory() + user->picture;
        QFile::remove(target);
        if (::link(QFile::encodeName(source).constData(), QFile::encodeName(target).constData()) !=
            0)
            QFile::rename(source, target);
    }
    return user;
}

void CommandFolder::remove(const Command& command) {
    QDir(command.path).removeRecursively();
}
