#include "cloud/body_reader.h"

#include "cloud/json_input.h"

BodyReader::BodyReader(const QByteArray& body) {
    if (const auto object = readJsonObject(body))
        object_ = *object;
    else
        fault();
}

BodyReader BodyReader::group(const char* key) {
    const QJsonValue value = at(key);
    if (!value.isUndefined() && !value.isObject())
        fault();
    return BodyReader(value.toObject(), faulty_);
}

QJsonValue BodyReader::at(const char* key) const {
    const QJsonValue value = object_.value(QLatin1String(key));
    return value.isNull() ? QJsonValue(QJsonValue::Undefined) : value;
}

QString BodyReader::text(const char* key, int maxBytes) {
    const QJsonValue value = at(key);
    if (value.isUndefined())
        return {};
    QString text = value.toString();
    // Half a surrogate pair could not be stored and read back.
    if (!value.isString() || !text.isValidUtf16() || text.toUtf8().size() > maxBytes)
        fault();
    return text;
}

std::optional<quint32> BodyReader::number(const char* key, quint32 least, quint32 most) {
    const QJsonValue value = at(key);
    if (value.isUndefined())
        return std::nullopt;
    double number = -1;
    if (value.isDouble()) {
        number = value.toDouble();
    } else {
        // QString's own conversion also takes signs, blanks and any number of zeros.
        const QString digits = value.toString();
        const quint32 read = digits.toUInt();
        if (digits == QString::number(read))
            number = read;
    }
    if (number < least || number > most || number != static_cast<quint32>(number)) {
        fault();
        return std::nullopt;
    }
    return static_cast<quint32>(number);
}

QString BodyReader::decimal(const char* key, quint32 most) {
    if (at(key) == QJsonValue(QString()))
        return {};
    const auto value = number(key, 0, most);
    return value ? QString::number(*value) : QString();
}
