#include "screens/standby_pictures.h"

#include <QDir>
#include <QStringList>

#include "base/device_folders.h"
#include "base/device_paths.h"
#include "ui/pictures.h"
#include "ui/theme.h"

namespace {

constexpr const char* kBackgrounds[] = {
    DeviceFolders::kBackgrounds,
    DeviceFolders::kDefaultBackgrounds,
    DeviceFolders::kManagementBackgrounds,
    DeviceFolders::kUsbImages,
};
constexpr QSize kLogoSize(240, 72);

QStringList pictureNames(const QString& deviceFolder) {
    return QDir(DevicePaths::at(deviceFolder))
        .entryList({QStringLiteral("*.jpg"), QStringLiteral("*.jpeg"), QStringLiteral("*.png"),
                    QStringLiteral("*.bmp")},
                   QDir::Files, QDir::Name);
}

}  // namespace

namespace StandbyPictures {

QPixmap background(int choice) {
    for (const char* name : kBackgrounds) {
        const QString folder = QLatin1String(name);
        const QStringList pictures = pictureNames(folder);
        if (choice < pictures.size())
            return Pictures::foreignKept(folder, pictures.at(choice),
                                         {Theme::kScreenWidth, Theme::kScreenHeight});
        choice -= pictures.size();
    }
    return {};
}

QPixmap logo() {
    const QString folder = QLatin1String(DeviceFolders::kLogo);
    const QStringList pictures = pictureNames(folder);
    return pictures.isEmpty() ? QPixmap()
                              : Pictures::foreignKept(folder, pictures.first(), kLogoSize);
}

}  // namespace StandbyPictures
