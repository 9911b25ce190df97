#pragma once

#include <QByteArray>
#include <QString>

/// Writing that a power cut does not undo, and removing that stays where it was meant. Any thread.
namespace Disk {

/// Writes @p content as a new file that is on the disk, but for its name, when this returns. False
/// when there is such a file already or the disk does not take it.
bool writeNew(const QString& path, const QByteArray& content);

/// Sees to it that what has been made, renamed or removed in @p folder is so after a power cut.
bool syncFolder(const QString& folder);

/// Makes @p folder with those above it that are missing.
bool makeFolder(const QString& folder);

/// Removes a file, a folder with all that is in it, or a link, whose target is left alone.
bool remove(const QString& path);

}  // namespace Disk
