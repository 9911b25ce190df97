#pragma once

#include <QPixmap>
#include <QString>

/// The pictures of the user interface, as they lie on the device. GUI thread only.
namespace Pictures {

/// The picture @p name of the folder /usr/img, e.g. "back.png". Kept in QPixmapCache. A null
/// pixmap and one line in the log when it cannot be had.
QPixmap icon(const QString& name);

/// The picture at @p devicePath, kept like icon().
QPixmap file(const QString& devicePath);

}  // namespace Pictures
