#pragma once

#include <QByteArray>
#include <QDir>
#include <QFile>
#include <QLoggingCategory>
#include <QTemporaryDir>
#include <cstdint>
#include <cstdlib>

/// Ends the process as a finding unless @p good.
inline void demand(bool good) {
    if (!good)
        std::abort();
}

/// What a target got, not copied.
inline QByteArray bytesOf(const std::uint8_t* bytes, std::size_t size) {
    return QByteArray::fromRawData(reinterpret_cast<const char*>(bytes), static_cast<int>(size));
}

/// An empty device root for a target that reads and writes files, and silence: what is logged about
/// each input would bury what the fuzzer says. Made before DevicePaths is used.
class FuzzRoot {
 public:
    FuzzRoot() {
        qInstallMessageHandler([](QtMsgType, const QMessageLogContext&, const QString&) {});
        qputenv("ZEL_ROOT", QFile::encodeName(dir_.path()));
    }
    QString path(const char* devicePath) const { return dir_.path() + QLatin1String(devicePath); }
    /// Empties the folder @p devicePath, or makes it.
    void clear(const char* devicePath) const {
        QDir(path(devicePath)).removeRecursively();
        QDir().mkpath(path(devicePath));
    }
    static void write(const QString& path, const QByteArray& content) {
        QFile file(path);
        if (file.open(QIODevice::WriteOnly))
            file.write(content);
    }

 private:
    const QTemporaryDir dir_;
};
