#pragma once

#include <QDir>
#include <QFile>
#include <QTemporaryDir>

/// A device root of a test's own. What the terminal brings along is linked in from the staged
/// root, one link per file where the program may remove files, so that nothing is ever written
/// there. It must be made before DevicePaths is used for the first time.
class DeviceRoot {
 public:
    DeviceRoot() {
        qputenv("ZEL_ROOT", QFile::encodeName(dir_.path()));
        const QString staged = QStringLiteral(ZEL_STAGED_ROOT "/zel1");
        for (const char* folder :
             {"mnt/data/Images", "mnt/data/input", "mnt/data/user", "mnt/data/thumb", "mnt/usb",
              "usr/img", "usr/lib/fonts", "zel1/image/img/fonts"})
            QDir(dir_.path()).mkpath(QLatin1String(folder));
        linkFiles(staged, path("/zel1"));
        linkFiles(staged + QLatin1String("/image"), path("/zel1/image"));
        linkFiles(staged + QLatin1String("/image/img"), path("/zel1/image/img"));
        linkFiles(staged + QLatin1String("/image/img/fonts"), path("/zel1/image/img/fonts"));
        QFile::link(staged + QLatin1String("/script"), path("/zel1/script"));
    }

    /// @p devicePath below this root.
    QString path(const char* devicePath) const { return dir_.path() + QLatin1String(devicePath); }

    /// Writes @p content at @p devicePath, over what is there; a link is replaced, not followed.
    void write(const char* devicePath, const QByteArray& content) const {
        QFile::remove(path(devicePath));
        QFile file(path(devicePath));
        if (!file.open(QIODevice::WriteOnly) || file.write(content) != content.size())
            qFatal("cannot write %s", devicePath);
    }

 private:
    static void linkFiles(const QString& from, const QString& to) {
        const QFileInfoList files = QDir(from).entryInfoList(QDir::Files);
        for (const QFileInfo& file : files)
            QFile::link(file.absoluteFilePath(), to + QLatin1Char('/') + file.fileName());
    }

    QTemporaryDir dir_;
};
