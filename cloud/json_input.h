#pragma once

#include <QByteArray>
#include <QJsonObject>
#include <optional>

/// The JSON object that @p text from outside holds; nothing when it is no object, or when an object
/// in it has the same key twice. Any thread.
std::optional<QJsonObject> readJsonObject(const QByteArray& text);
