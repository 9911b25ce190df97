#include "ui/pictures.h"

#include <QBuffer>
#include <QDateTime>
#include <QDir>
#include <QFileInfo>
#include <QImageReader>
#include <QLoggingCategory>
#include <QPixmapCache>

#include "base/device_paths.h"
#include "ui/picture_content.h"

Q_LOGGING_CATEGORY(pictureLog, "zel.ui.pictures", QtInfoMsg)

namespace {

/// No picture of a person or of a screen comes near these.
constexpr qint64 kMaxFile = 8 * 1024 * 1024;
constexpr int kMaxSide = 4096;
/// The icons of many screens and the largest picture of one, in kilobytes.
constexpr int kCacheLimit = 2048;

QImage read(const QString& path, const QSize& size) {
    QFile file(path);
    if (!file.open(QIODevice::ReadOnly))
        return {};
    QByteArray content = PictureContent::decodable(file.read(qMin(file.size(), kMaxFile)));
    QBuffer buffer(&content);
    QImageReader reader(&buffer);
    reader.setDecideFormatFromContent(true);
    reader.setAutoTransform(true);
    const QByteArray format = reader.format();
    const QSize full = reader.size();
    // Other formats may point to further files.
    if ((format != "jpeg" && format != "png" && format != "bmp") || full.isEmpty() ||
        full.width() > kMaxSide || full.height() > kMaxSide)
        return {};
    const bool turned = reader.transformation() & QImageIOHandler::TransformationRotate90;
    const QSize covering =
        full.scaled(turned ? size.transposed() : size, Qt::KeepAspectRatioByExpanding);
    if (covering.width() < full.width())
        reader.setScaledSize(covering);
    return reader.read();
}

/// Nothing unless @p name is a plain picture file that lies in @p deviceFolder itself.
QFileInfo foreignFile(const QString& deviceFolder, const QString& name) {
    if (name.isEmpty() || name.contains(QLatin1Char('/')) || name.startsWith(QLatin1Char('.')))
        return {};
    const QFileInfo folder(DevicePaths::at(deviceFolder));
    const QFileInfo info(QDir(folder.filePath()), name);
    if (!info.isFile() || info.canonicalPath() != folder.canonicalFilePath() ||
        info.size() > kMaxFile)
        return {};
    return info;
}

QImage readForeign(const QFileInfo& file, const QSize& size) {
    QImage picture = read(file.filePath(), size);
    if (picture.isNull())
        qCInfo(pictureLog, "no picture in %s", qPrintable(file.filePath()));
    return picture;
}

}  // namespace

namespace Pictures {

QPixmap icon(const QString& name) {
    return kept(QLatin1String("/usr/img/") + name);
}

QPixmap kept(const QString& devicePath) {
    QPixmap picture;
    if (QPixmapCache::find(devicePath, &picture))
        return picture;
    picture = file(devicePath);
    // A missing one is remembered too, so that it is looked for and logged once.
    QPixmapCache::insert(devicePath, picture);
    return picture;
}

QPixmap file(const QString& devicePath) {
    // QPixmap's own way of reading a file keeps it in the cache as well.
    const QImage picture(DevicePaths::at(devicePath));
    if (picture.isNull())
        qCInfo(pictureLog, "no picture %s", qPrintable(devicePath));
    return QPixmap::fromImage(picture);
}

QPixmap foreign(const QString& deviceFolder, const QString& name, const QSize& size) {
    return QPixmap::fromImage(foreignImage(deviceFolder, name, size));
}

QImage foreignImage(const QString& deviceFolder, const QString& name, const QSize& size) {
    const QFileInfo file = foreignFile(deviceFolder, name);
    return file.isFile() ? readForeign(file, size) : QImage();
}

QPixmap foreignKept(const QString& deviceFolder, const QString& name, const QSize& size) {
    const QFileInfo file = foreignFile(deviceFolder, name);
    if (!file.isFile())
        return {};
    const QString key = QStringLiteral("%1/%2/%3/%4x%5")
                            .arg(file.canonicalFilePath())
                            .arg(file.lastModified().toMSecsSinceEpoch())
                            .arg(file.size())
                            .arg(size.width())
                            .arg(size.height());
    QPixmap picture;
    if (!QPixmapCache::find(key, &picture)) {
        picture = QPixmap::fromImage(readForeign(file, size));
        QPixmapCache::insert(key, picture);
    }
    return picture;
}

void limitCache() {
    QPixmapCache::setCacheLimit(kCacheLimit);
}

void giveBack() {
    QPixmapCache::clear();
}

}  // namespace Pictures
