#include "base/folder_links.h"

#include <unistd.h>

#include <QDir>
#include <QFile>
#include <QFileInfo>
#include <QHash>

namespace {

/// What the link says, word for word; empty when @p path is none.
QByteArray linkText(const QString& path) {
    char text[4096];
    const auto length = ::readlink(QFile::encodeName(path).constData(), text, sizeof text);
    return length > 0 ? QByteArray(text, static_cast<int>(length)) : QByteArray();
}

QFileInfoList contents(const QString& folder) {
    // The last one finds links that lead nowhere.
    return QDir(folder).entryInfoList(QDir::AllEntries | QDir::NoDotAndDotDot | QDir::System,
                                      QDir::Name);
}

}  // namespace

QStringList FolderLinks::entries(const QString& folder) {
    QStringList paths;
    for (const QFileInfo& entry : contents(folder))
        paths.append(entry.filePath());
    return paths;
}

void FolderLinks::replace(const QString& folder, const QStringList& targets) {
    QHash<QString, QString> wanted;  // target by name
    for (const QString& target : targets)
        wanted.insert(QFileInfo(target).fileName(), target);
    for (const QFileInfo& entry : contents(folder)) {
        const auto link = wanted.constFind(entry.fileName());
        const bool right =
            link != wanted.cend() && linkText(entry.filePath()) == QFile::encodeName(*link);
        if (!right && (entry.isSymLink() || !entry.isDir()))
            ::unlink(QFile::encodeName(entry.filePath()).constData());
    }
    for (const QString& target : targets)
        add(folder, target);
}

void FolderLinks::add(const QString& folder, const QString& target) {
    const QString path = QDir(folder).filePath(QFileInfo(target).fileName());
    // Refused where there is something of that name.
    const int refused =
        ::symlink(QFile::encodeName(target).constData(), QFile::encodeName(path).constData());
    Q_UNUSED(refused)
}
