#include "cloud/disk.h"

#include <fcntl.h>
#include <unistd.h>

#include <QDir>
#include <QFile>
#include <QFileInfo>

namespace Disk {

bool writeNew(const QString& path, const QByteArray& content) {
    QFile file(path);
    return file.open(QIODevice::WriteOnly | QIODevice::NewOnly) &&
           file.write(content) == content.size() && file.flush() && ::fsync(file.handle()) == 0;
}

bool syncFolder(const QString& folder) {
    const int handle =
        ::open(QFile::encodeName(folder).constData(), O_RDONLY | O_DIRECTORY | O_CLOEXEC);
    if (handle < 0)
        return false;
    const bool done = ::fsync(handle) == 0;
    ::close(handle);
    return done;
}

bool makeFolder(const QString& folder) {
    if (QFileInfo(folder).isDir())
        return true;
    const QString above = QFileInfo(QDir::cleanPath(folder)).path();
    return makeFolder(above) && QDir().mkdir(folder) && syncFolder(above);
}

bool remove(const QString& path) {
    // What Qt's recursion begins with it follows, links included.
    const QFileInfo entry(path);
    return entry.isSymLink() || !entry.isDir() ? QFile::remove(path)
                                               : QDir(path).removeRecursively();
}

}  // namespace Disk
