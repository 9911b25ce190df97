#pragma once

#include <QString>

/// Pictures of people who do not exist.
namespace portrait {

/// The name of the picture that a visitor's call shows.
constexpr char kVisitor[] = "visitor";

/// Draws a face and writes it as user/@p userId.jpg and, small, as thumb/@p userId.jpg below
/// @p dataFolder. Different values of @p look look different.
void save(const QString& dataFolder, const QString& userId, int look);

}  // namespace portrait
