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

/// The picture at @p devicePath, kept as an icon is.
QPixmap kept(const QString& devicePath);

/// The same, not kept: for one of many, each of which is shown for a moment.
QPixmap file(const QString& devicePath);

/// A picture that did not come with the terminal, such as a person's: the file @p name of
/// @p deviceFolder, scaled down as far as it still covers @p size. A null pixmap for anything but a
/// plain picture file that lies in the folder itself, however @p name is made up. Not kept:
/// nobody's picture stays in memory longer than a screen shows it.
QPixmap foreign(const QString& deviceFolder, const QString& name, const QSize& size);

/// The same as an image. Any thread.
QImage foreignImage(const QString& deviceFolder, const QString& name, const QSize& size);

/// The same for pictures of nobody, kept until the file changes.
QPixmap foreignKept(const QString& deviceFolder, const QString& name, const QSize& size);

/// Bounds what is kept; called once, at the start.
void limitCache();
/// Gives back what is kept; it is read again when it is next shown.
void giveBack();

}  // namespace Pictures
