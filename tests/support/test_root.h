#pragma once

#include <QDir>
#include <QFile>
#include <QTemporaryDir>

/// An empty device root of a test's own, for parts of the terminal. Made before DevicePaths is
/// used.
class TestRoot {
 public:
    TestRoot() { qputenv("ZEL_ROOT", QFile::encodeName(dir_.path())); }
    QString path(const char* devicePath) const { return dir_.path() + QLatin1String(devicePath); }
    /// Empties the folder @p devicePath, or makes it.
    void clear(const char* devicePath) const {
        QDir(path(devicePath)).removeRecursively();
        QDir().mkpath(path(devicePath));
    }
    /// Writes a file, with the folders that it lies in.
    static void write(const QString& path, const QByteArray& content) {
        QDir().mkpath(QFileInfo(path).path());
        QFile file(path);
        if (file.open(QIODevice::WriteOnly))
            file.write(content);
    }
    static QByteArray read(const QString& path) {
        QFile file(path);
        return file.open(QIODevice::ReadOnly) ? file.readAll() : QByteArray();
    }
    /// The names of all that lies in a folder, or what of it matches @p names.
    static QStringList namesIn(const QString& path, const QStringList& names = {}) {
        return QDir(path).entryList(
            names, QDir::AllEntries | QDir::Hidden | QDir::System | QDir::NoDotAndDotDot,
            QDir::Name);
    }

 private:
    const QTemporaryDir dir_;
};
