#pragma once

#include <QByteArray>
#include <QJsonObject>
#include <QJsonValue>
#include <QString>
#include <optional>

/// Reads values out of the JSON object that a request's body holds, and notes when one is of the
/// wrong type or out of range. A value that is not there is no fault, and null is none.
class BodyReader {
 public:
    /// A @p body that is not a JSON object is a fault, and reads like an empty one.
    explicit BodyReader(const QByteArray& body);
    BodyReader(const BodyReader&) = delete;
    BodyReader& operator=(const BodyReader&) = delete;

    /// The object at @p key; its faults are this reader's, which has to outlive it.
    BodyReader group(const char* key);
    bool has(const char* key) const { return !at(key).isUndefined(); }
    /// The text at @p key, empty when there is none; longer than @p maxBytes of UTF-8 is a fault.
    QString text(const char* key, int maxBytes = kAnyLength);
    /// The whole number at @p key, given as a number or as its decimal text.
    std::optional<quint32> number(const char* key, quint32 least, quint32 most);
    /// The same up to @p most as its text, empty when there is none; so is an empty text.
    QString decimal(const char* key, quint32 most);

    void fault() { *faulty_ = true; }
    bool ok() const { return !*faulty_; }

 private:
    static constexpr int kAnyLength = 0x7FFFFFFF;

    BodyReader(QJsonObject object, bool* faulty) : object_(std::move(object)), faulty_(faulty) {}

    /// The value at @p key, undefined when there is none.
    QJsonValue at(const char* key) const;

    QJsonObject object_;
    bool ownFault_ = false;
    bool* const faulty_ = &ownFault_;
};
