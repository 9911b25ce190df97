#include "sim/common/firmware_image.h"

#include <QFile>
#include <QRegularExpression>

namespace {

constexpr char kMark[] = "\nfirmware ";

}  // namespace

namespace firmware_image {

QByteArray make(const QString& version, int size) {
    const QByteArray end = kMark + version.toLatin1() + '\n';
    QByteArray image("BZh9");
    quint32 noise = 1;
    while (image.size() + end.size() < size) {
        noise = noise * 1664525 + 1013904223;
        image.append(static_cast<char>(noise >> 24));
    }
    return image + end;
}

QString versionOf(const QString& path) {
    constexpr qint64 kEnd = 64;
    QFile file(path);
    if (!file.open(QIODevice::ReadOnly) || !file.seek(qMax<qint64>(0, file.size() - kEnd)))
        return {};
    const QByteArray end = file.read(kEnd);
    const int mark = end.lastIndexOf(kMark);
    if (mark < 0 || !end.endsWith('\n'))
        return {};
    const QString version =
        QString::fromLatin1(end.mid(mark).simplified()).section(QLatin1Char(' '), 1);
    return isVersion(version) ? version : QString();
}

bool isVersion(const QString& text) {
    static const QRegularExpression form(QStringLiteral("^[0-9A-Za-z.]{1,15}$"));
    return form.match(text).hasMatch();
}

}  // namespace firmware_image
