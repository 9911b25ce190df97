#include "app/fonts.h"

#include <QFile>
#include <QFontDatabase>
#include <QLoggingCategory>
#include <QStringList>

#include "base/device_paths.h"

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

void link(QLatin1String name) {
    DevicePaths::runShell(QStringLiteral("ln -s %1%3 %2%3").arg(kSource, kLinks, name));
}

void add(QLatin1String name) {
    // A font that is added to a database not yet filled is read once more when it is filled.
    const QFontDatabase filled;
    if (QFontDatabase::addApplicationFont(DevicePaths::at(QString(kLinks) + name)) < 0)
        qCWarning(fontLog, "font %s cannot be had", name.data());
}

}  // namespace

namespace Fonts {

void installBase() {
    DevicePaths::runShell(QStringLiteral("rm /usr/lib/fonts/*"));
    for (const QLatin1String name : {kLight, kBold, kMedium, kRegular, kSerif})
        link(name);
    registerBase();
}

void registerBase() {
    for (const QLatin1String name : {kLight, kRegular, kMedium, kBold, kSerif})
        add(name);
}

void installJapanese() {
    for (const QLatin1String name : {kJapaneseMedium, kJapaneseBold})
        link(name);
    for (const QLatin1String name : {kJapaneseMedium, kJapaneseBold})
        add(name);
}

void removeJapanese() {
    // The files go, not the links: a terminal that has left the language needs the space.
    if (!QFile::exists(DevicePaths::at(QString(kSource) + kJapaneseMedium)))
        return;
    for (const QLatin1String name : {kJapaneseMedium, kJapaneseBold})
        DevicePaths::runShell(QStringLiteral("rm %1%2").arg(kSource, name));
}

}  // namespace Fonts
