#pragma once

#include <QByteArray>
#include <QString>

/// Pictures of people who do not exist.
namespace portrait {

/// The name of the picture that a visitor's call shows.
constexpr char kVisitor[] = "visitor";

/// Draws a face as a JPEG. Different values of @p look look different.
QByteArray jpeg(int look);

/// Draws a face and writes it below @p dataFolder: for the terminal's screens as
/// user/@p userId.jpg and, small, as thumb/@p userId.jpg, and for reports as a snapshot.
void save(const QString& dataFolder, const QString& userId, int look);

/// Makes the snapshot Images/@p name, such as one that the management service has sent, the user's
/// picture on the terminal's screens too. Nothing when there is no such picture.
void adopt(const QString& dataFolder, const QString& userId, const QString& name);

/// Draws a face and writes it as Images/@p name.jpg, as a camera picture for reports.
void saveSnapshot(const QString& dataFolder, const QString& name, int look);

}  // namespace portrait
