#pragma once

#include <QByteArray>
#include <QString>

/// Made-up firmware, which the one simulator offers and the other installs: an archive in looks,
/// with its version at the end.
namespace firmware_image {

/// The version that is offered when nobody asks for another one.
constexpr char kNewVersion[] = "1.1.0";

/// Firmware of @p version, @p size bytes; always the same.
QByteArray make(const QString& version, int size);

/// The version of the firmware in the file @p path; empty when it tells none.
QString versionOf(const QString& path);

/// Whether @p text can be a version: it has to fit the field that holds it.
bool isVersion(const QString& text);

}  // namespace firmware_image
