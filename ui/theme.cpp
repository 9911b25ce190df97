#include "ui/theme.h"

#include <QFile>
#include <QFileInfo>
#include <QJsonArray>
#include <QJsonDocument>
#include <QJsonObject>
#include <QLoggingCategory>
#include <cctype>

Q_LOGGING_CATEGORY(themeLog, "zel.ui.theme", QtInfoMsg)

namespace Theme {
namespace {

constexpr qint64 kMaxFileSize = 64 * 1024;

constexpr struct Entry {
    const char* name;
    QRgb own;
    QRgb detail::Colors::*color;
} kEntries[] = {
#define ZEL_THEME_COLOR(name, value) {#name, value, &detail::Colors::name},
    ZEL_THEME_COLORS(ZEL_THEME_COLOR)
#undef ZEL_THEME_COLOR
};

/// Of "#rrggbb", or of "#aarrggbb" for one that what is behind it shines through.
bool parse(const QString& text, QRgb own, QRgb* color) {
    const bool withAlpha = text.size() == 9 && qAlpha(own) < 0xff;
    if ((text.size() != 7 && !withAlpha) || !text.startsWith(QLatin1Char('#')))
        return false;
    for (const QChar digit : text.mid(1)) {
        if (std::isxdigit(static_cast<unsigned char>(digit.toLatin1())) == 0)
            return false;
    }
    *color = text.mid(1).toUInt(nullptr, 16) | (withAlpha ? 0 : 0xff000000);
    return true;
}

QJsonObject readObject(const QString& path) {
    QFile file(path);
    if (!file.exists())
        return {};
    if (!QFileInfo(path).isFile() || file.size() > kMaxFileSize ||
        !file.open(QIODevice::ReadOnly)) {
        qCWarning(themeLog, "cannot read %s", qPrintable(path));
        return {};
    }
    const QJsonDocument document = QJsonDocument::fromJson(file.read(kMaxFileSize));
    if (!document.isObject())
        qCWarning(themeLog, "%s holds no JSON object", qPrintable(path));
    return document.object();
}

}  // namespace

namespace detail {
Colors colors;
}

void load(const QString& path) {
    detail::colors = {};
    QJsonObject wanted = readObject(path);
    for (const Entry& entry : kEntries) {
        QString key = QLatin1String(entry.name);
        key[0] = key[0].toLower();
        const QJsonValue value = wanted.take(key);
        if (!value.isUndefined() &&
            !parse(value.toString(), entry.own, &(detail::colors.*entry.color)))
            qCWarning(themeLog, "%s is no color for %s",
                      QJsonDocument(QJsonArray{value}).toJson(QJsonDocument::Compact).constData(),
                      qPrintable(key));
    }
    for (auto unknown = wanted.constBegin(); unknown != wanted.constEnd(); ++unknown)
        qCWarning(themeLog, "there is no color %s", qPrintable(unknown.key()));
}

}  // namespace Theme
