#include "ui/pictures.h"

#include <QLoggingCategory>
#include <QPixmapCache>

#include "base/device_paths.h"

Q_LOGGING_CATEGORY(pictureLog, "zel.ui.pictures", QtInfoMsg)

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

}  // namespace Pictures
