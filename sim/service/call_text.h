#pragma once

#include <QByteArray>
#include <QString>

/// Makes what clients sent fit to be printed: in one line, without pictures, and without anything
/// that a console would obey.
namespace call_text {

/// A header's value or another short text.
QString shortText(const QByteArray& text);

/// A body: JSON with long texts shortened and pictures as their sizes, anything else by its
/// beginning.
QString shortBody(const QByteArray& body);

}  // namespace call_text
