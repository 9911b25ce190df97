#include "ui/pictures.h"

#include <QDateTime>
#include <QDir>
#include <QFileInfo>
#include <QImageReader>
#include <QLoggingCategory>
#include <QPixmapCache>

#include "base/device_paths.h"

Q_LOGGING_CATEGORY(pictureLog, "zel.ui.pictures", QtInfoMsg)

namespace {

/// No picture of a person or of a screen comes near these.
constexpr qint64 kMaxFile = 8 * 1024 * 1024;
constexpr int kMaxSide = 4096;

QImage read(const QString& path, const QSize& size) {
    QImageReader reader(path);
    reader.setDecideFormatFromContent(true);
    reader.setAutoTransform(true);
    const QByteArray format = reader.format();
    const QSize full = reader.size();
    // Other formats may point to further files.
    if ((format != "jpeg" && format != "png" && format != "bmp") || full.isEmpty() ||
        full.width() > kMaxSide || full.height() > kMaxSide) {
        qCInfo(pictureLog, "no picture in %s", qPrintable(path));
        return {};
    }
    const bool turned = reader.transformation() & QImageIOHandler::TransformationRotate90;
    const QSize covering =
        full.scaled(turned ? size.transposed() : size, Qt::KeepAspectRatioByExpanding);
    if (covering.width() < full.width())
        reader.setScaledSize(covering);
    QImage picture = reader.read();
    if (picture.isNull())
        qCInfo(pictureLog, "no picture in %s", qPrintable(path));
    return picture;
}

/// The file @p name that lies in @p deviceFolder itself; none when it is not such a file or is too
/// large.
QFileInfo plainFile(const QString& deviceFolder, const QString& name) {
    if (name.isEmpty() || name.contains(QLatin1Char('/')) || name.startsWith(QLatin1Char('.')))
        return {};
    const QFileInfo folder(DevicePaths::at(deviceFolder));
    QFileInfo info(QDir(folder.filePath()), name);
    const bool plain = info.isFile() && info.canonicalPath() == folder.canonicalFilePath() &&
                       info.size() <= kMaxFile;
    return plain ? info : QFileInfo();
}

}  // namespace

namespace Pictures {

QPixmap icon(const QString& name) {
    return file(QLatin1String("/usr/img/") + name);
}

QPixmap file(const QString& devicePath) {
    QPixmap picture;
    if (QPixmapCache::find(devicePath, &picture))
        return picture;
    if (!picture.load(DevicePaths::at(devicePath)))
        qCInfo(pictureLog, "no picture %s", qPrintable(devicePath));
    // A missing one is remembered too, so that it is looked for and logged once.
    QPixmapCache::insert(devicePath, picture);
    return picture;
}

QPixmap foreign(const QString& deviceFolder, const QString& name, const QSize& size) {
    const QFileInfo info = plainFile(deviceFolder, name);
    if (!info.isFile())
        return {};
    const QString key = QStringLiteral("%1/%2/%3/%4x%5")
                            .arg(info.canonicalFilePath())
                            .arg(info.lastModified().toMSecsSinceEpoch())
                            .arg(info.size())
                            .arg(size.width())
                            .arg(size.height());
    QPixmap picture;
    if (QPixmapCache::find(key, &picture))
        return picture;
    picture = QPixmap::fromImage(read(info.filePath(), size));
    QPixmapCache::insert(key, picture);
    return picture;
}

QImage readForeign(const QString& deviceFolder, const QString& name, const QSize& size) {
    const QFileInfo info = plainFile(deviceFolder, name);
    return info.isFile() ? read(info.filePath(), size) : QImage();
}

}  // namespace Pictures
