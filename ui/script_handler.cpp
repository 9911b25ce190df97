#include "ui/script_handler.h"

#include <QFile>
#include <QFileInfo>
#include <QJsonDocument>
#include <QLoggingCategory>
#include <optional>
#include <utility>

#include "base/device_paths.h"

Q_LOGGING_CATEGORY(scriptLog, "zel.ui.script", QtInfoMsg)

namespace {

/// Far above any real script (about 100 KB); keeps a damaged file from eating the memory.
constexpr qint64 kMaxFileSize = 4 * 1024 * 1024;

/// Pixels and percent far beyond a panel's: a damaged file's number still is one that texts can be
/// measured with.
constexpr double kMostTypographic = 1000;

const QLatin1String kList("list");
const QLatin1String kTitle("title");
const QLatin1String kPath("path");
const QLatin1String kScripts("Scripts");

/// The file's bytes; nothing (and a line in the log) when they cannot be had.
std::optional<QByteArray> readFile(const QString& path) {
    QFile file(path);
    if (!QFileInfo(path).isFile() || !file.open(QIODevice::ReadOnly | QIODevice::Text)) {
        qCWarning(scriptLog, "cannot read %s", qPrintable(path));
        return std::nullopt;
    }
    if (file.size() > kMaxFileSize) {
        qCWarning(scriptLog, "%s is too large (%lld bytes), not read", qPrintable(path),
                  static_cast<long long>(file.size()));
        return std::nullopt;
    }
    return file.read(kMaxFileSize);
}

/// The object that the file holds; an empty one (and a line in the log) when it holds none.
QJsonObject readObject(const QString& devicePath) {
    const QString path = DevicePaths::at(devicePath);
    const std::optional<QByteArray> bytes = readFile(path);
    if (!bytes)
        return {};
    // constData() ends at the first NUL byte, as some editors leave one at the end.
    const QByteArray text = QString::fromUtf8(bytes->constData()).toUtf8();
    QJsonParseError error;
    const QJsonDocument document = QJsonDocument::fromJson(text, &error);
    if (!document.isObject())
        qCWarning(scriptLog, "%s holds no JSON object: %s", qPrintable(path),
                  error.error == QJsonParseError::NoError ? "something else"
                                                          : qPrintable(error.errorString()));
    return document.object();
}

float typographic(const QJsonValue& value) {
    return static_cast<float>(qBound(-kMostTypographic, value.toDouble(), kMostTypographic));
}

}  // namespace

ScriptHandler::ScriptHandler(QObject* parent, QString listPath) : QObject(parent) {
    initScriptFile(std::move(listPath));
}

int ScriptHandler::initScriptFile(QString path) {
    list_ = readObject(path);
    languages_ = list_.value(kList).toArray();
    return 0;
}

int ScriptHandler::setScript(QString title) {
    for (const QJsonValue& element : qAsConst(languages_)) {
        const QJsonObject entry = element.toObject();
        if (entry.value(kTitle).toString() != title)
            continue;

        path_ = entry.value(kPath).toString();
        const QJsonObject file = readObject(path_);
        language_ = file.value(QLatin1String("Language")).toString();
        fontFamily_ = file.value(QLatin1String("FontFamily")).toString();

        entries_.clear();
        const QJsonObject scripts = file.value(kScripts).toObject();
        entries_.reserve(scripts.size());
        for (auto it = scripts.begin(); it != scripts.end(); ++it) {
            const QJsonObject source = it.value().toObject();
            Script made;
            made.type = source.value(QLatin1String("Type")).toString();
            made.size = typographic(source.value(QLatin1String("Size")));
            made.height = typographic(source.value(QLatin1String("Height")));
            made.letter = typographic(source.value(QLatin1String("Letter")));
            made.script = source.value(QLatin1String("Script")).toString();
            made.fontFamily = fontFamily_;
            entries_.insert(it.key(), made);
        }
        ++revision_;
        return 0;
    }
    return -1;
}

ScriptHandler::Script ScriptHandler::getScript(const QString& key) const {
    const auto found = entries_.constFind(key);
    if (found != entries_.constEnd())
        return *found;
    Script missing;
    missing.fontFamily = fontFamily_;
    return missing;
}

QJsonValue ScriptHandler::readScript(const QString& key) const {
    const QJsonObject scripts = readObject(path_).value(kScripts).toObject();
    return scripts.contains(key) ? scripts.value(key) : QJsonValue(QJsonValue::Undefined);
}

QStringList ScriptHandler::getLanguageList() const {
    QStringList titles;
    for (const QJsonValue& element : languages_)
        titles.append(element.toObject().value(kTitle).toString());
    return titles;
}
