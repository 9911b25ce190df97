#include "screens/standby_pictures.h"

#include <QDir>
#include <QFile>
#include <QFileInfo>
#include <QStringList>
#include <algorithm>
#include <iterator>

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
constexpr const char* kSuffixes[] = {"jpg", "jpeg", "png", "bmp"};
constexpr QSize kLogoSize(240, 72);

bool isPicture(const QString& name) {
    // Name filters of QDir would do, and bring the compiler of regular expressions along.
    const QString suffix = QFileInfo(name).suffix();
    return std::any_of(std::begin(kSuffixes), std::end(kSuffixes), [&](const char* each) {
        return suffix.compare(QLatin1String(each), Qt::CaseInsensitive) == 0;
    });
}

QStringList pictureNames(const QString& deviceFolder) {
    QStringList names = QDir(DevicePaths::at(deviceFolder)).entryList(QDir::Files, QDir::Name);
    names.erase(std::remove_if(names.begin(), names.end(),
                               [](const QString& name) { return !isPicture(name); }),
                names.end());
    return names;
}

}  // namespace

namespace StandbyPictures {

QVector<Picture> backgrounds() {
    QVector<Picture> pictures;
    for (const char* name : kBackgrounds) {
        const QString folder = QLatin1String(name);
        for (const QString& picture : pictureNames(folder))
            pictures.append({folder, picture});
    }
    return pictures;
}

QPixmap background(int choice) {
    const Picture picture = backgrounds().value(choice);
    return picture.name.isEmpty()
               ? QPixmap()
               : Pictures::foreignKept(picture.folder, picture.name,
                                       {Theme::kScreenWidth, Theme::kScreenHeight});
}

QPixmap logo() {
    const QString folder = QLatin1String(DeviceFolders::kLogo);
    const QStringList pictures = pictureNames(folder);
    if (!pictures.isEmpty())
        return Pictures::foreignKept(folder, pictures.first(), kLogoSize);
    const QString makers = QStringLiteral("/zel1/image/logo.png");
    return QFile::exists(DevicePaths::at(makers)) ? Pictures::file(makers) : QPixmap();
}

}  // namespace StandbyPictures
