#include "sim/service/call_text.h"

#include <QJsonArray>
#include <QJsonDocument>
#include <QJsonObject>

namespace {

constexpr int kMostText = 80;

QString printable(QString text) {
    for (QChar& letter : text) {
        if (!letter.isPrint() && !letter.isSurrogate())
            letter = QLatin1Char('.');
    }
    return text;
}

QString shortened(const QString& text) {
    return text.size() <= kMostText
               ? text
               : QStringLiteral("%1... (%2 characters)").arg(text.left(kMostText)).arg(text.size());
}

bool isPicture(const QString& key) {
    return key == QLatin1String("visImg") || key == QLatin1String("infImg");
}

QJsonValue shortValue(const QString& key, const QJsonValue& value) {
    if (value.isObject()) {
        QJsonObject object = value.toObject();
        for (auto member = object.begin(); member != object.end(); ++member)
            member.value() = shortValue(member.key(), member.value());
        return object;
    }
    if (value.isArray()) {
        QJsonArray array = value.toArray();
        for (auto&& element : array)
            element = shortValue(key, element);
        return array;
    }
    if (!value.isString())
        return value;
    const QString text = value.toString();
    if (isPicture(key) && !text.isEmpty()) {
        const QByteArray picture = QByteArray::fromBase64(text.toLatin1());
        return QStringLiteral("(picture of %1 bytes)").arg(picture.size());
    }
    return shortened(text);
}

}  // namespace

namespace call_text {

QString shortText(const QByteArray& text) {
    return printable(shortened(QString::fromUtf8(text.left(8 * kMostText))));
}

QString shortBody(const QByteArray& body) {
    const QJsonDocument document = QJsonDocument::fromJson(body);
    if (!document.isObject())
        return shortText(body);
    const QJsonObject object = shortValue({}, document.object()).toObject();
    return printable(QString::fromUtf8(QJsonDocument(object).toJson(QJsonDocument::Compact)));
}

}  // namespace call_text
