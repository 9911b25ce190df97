#include "app/fonts.h"

#include <QFile>
#include <QFontDatabase>
#include <QLoggingCategory>
#include <QStringList>

#include "base/device_paths.h"
#include "base/folder_links.h"

Q_LOGGING_CATEGORY(fontLog, "zel.app.fonts", QtInfoMsg)

namespace {

const QLatin1String kSource("/zel1/image/img/fonts/");
const QLatin1String kLinks("/usr/lib/fonts/");

const QLatin1String kLight("NotoSansCJKkr-Light.otf");
const QLatin1String kRegular("NotoSansCJKkr-Regular.otf");
const QLatin1String kMedium("NotoSansCJKkr-Medium.otf");
const QLatin1String kBold("NotoSansCJKkr-Bold.otf");
const QLatin1String kSerif("NotoSerif-Bold.ttf");
const QLatin1String kJapaneseMedium("logotypejp_mp_m_1.1.ttf");
const QLatin1String kJapaneseBold("logotypejp_mp_b_1.1.ttf");

QString source(QLatin1String name) {
    return DevicePaths::at(QString(kSource) + name);
}

void add(QLatin1String name) {
    // A font that is added to a database not yet filled is read once more when it is filled.
    const QFontDatabase filled;
    if (QFontDatabase::addApplicationFont(DevicePaths::at(QString(kLinks) + name)) < 0)
        qCWarning(fontLog, "font %s cannot be had", name.data());
}

}  // namespace

namespace Fonts {

void configure() {
    const char* const variable = "FONTCONFIG_FILE";
    const QString file = DevicePaths::at(QStringLiteral("/zel1/fonts.conf"));
    if (!qEnvironmentVariableIsSet(variable) && QFile::exists(file))
        qputenv(variable, QFile::encodeName(file));
}

void installBase() {
    QStringList files;
    for (const QLatin1String name : {kLight, kBold, kMedium, kRegular, kSerif})
        files.append(source(name));
    FolderLinks::replace(DevicePaths::at(kLinks), files);
    registerBase();
}

void registerBase() {
    for (const QLatin1String name : {kLight, kRegular, kMedium, kBold, kSerif})
        add(name);
}

void installJapanese() {
    for (const QLatin1String name : {kJapaneseMedium, kJapaneseBold})
        FolderLinks::add(DevicePaths::at(kLinks), source(name));
    for (const QLatin1String name : {kJapaneseMedium, kJapaneseBold})
        add(name);
}

void removeJapanese() {
    // The files go, not the links: a terminal that has left the language needs the space.
    if (!QFile::exists(source(kJapaneseMedium)))
        return;
    for (const QLatin1String name : {kJapaneseMedium, kJapaneseBold})
        QFile::remove(source(name));
}

}  // namespace Fonts
