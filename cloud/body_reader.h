#pragma once

#include <QByteArray>
#include <QJsonObject>
#include <QString>
#include <optional>

/// Reads values out of the JSON object that a request's body holds, and notes when one is of the
/// wrong type or out of range. A value that is not there is no fault.
class BodyReader {
 public:
    /// A @p body that is not a JSON object is a fault, and reads like an empty one.
    explicit BodyReader(const QByteArray& body);
    BodyReader(const BodyReader&) = delete;
    BodyReader& operator=(const BodyReader&) = delete;

    /// The object at @p key; its faults are this reader's, which has to outlive it.
    BodyReader group(const char* key);
    bool has(const char* key) const { return object_.contains(QLatin1String(key)); }
    /// The text at @p key, empty when there is none; longer than @p maxBytes of UTF-8 is a fault.
    QString text(const char* key, int maxBytes = kAnyLength);
    /// The whole number at @p key, given as a number or as its decimal text.
    std::optional<quint32> number(const char* key, quint32 least, quint32 most);

    void fault() { *faulty_ = true; }
    bool ok() const { return !*faulty_; }

 private:
    static constexpr int kAnyLength = 0x7FFFFFFF;

    BodyReader(QJsonObject object, bool* faulty) : object_(std::move(object)), faulty_(faulty) {}

    QJsonObject object_;
    bool ownFault_ = false;
    bool* const faulty_ = &ownFault_;
};
