#pragma once

#include <QImage>
#include <QPixmap>
#include <QSize>
#include <QString>

/// The pictures of the user interface, as they lie on the device. GUI thread only.
namespace Pictures {

/// The picture @p name of the folder /usr/img, e.g. "back.png". Kept in QPixmapCache. A null
/// pixmap and one line in the log when it cannot be had.
QPixmap icon(const QString& name);

/// The picture at @p devicePath, kept like icon().
QPixmap file(const QString& devicePath);

/// A picture that did not come with the terminal: the file @p name of @p deviceFolder, scaled down
/// as far as it still covers @p size. A null pixmap for anything but a plain picture file that
/// lies in the folder itself, however @p name is made up. Kept until the file changes.
QPixmap foreign(const QString& deviceFolder, const QString& name, const QSize& size);

/// The same read anew each time, for whoever keeps pictures by other rules. Any thread.
QImage readForeign(const QString& deviceFolder, const QString& name, const QSize& size);

}  // namespace Pictures
