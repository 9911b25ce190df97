#include "screens/factory/factory_report.h"

#include <QFile>
#include <QFileInfo>
#include <QJsonDocument>
#include <QJsonObject>
#include <QLoggingCategory>
#include <cerrno>
#include <cstdio>
#include <cstring>

#include "app/window_shell.h"
#include "base/clock.h"
#include "base/device_paths.h"
#include "cloud/disk.h"
#include "link/device_message.h"

Q_LOGGING_CATEGORY(factoryLog, "zel.screens.factory", QtInfoMsg)

namespace {

constexpr int kFormat = 1;  // to be raised when a reader of the one before would be wrong

int count(const QJsonArray& tests, const char* verdict) {
    int found = 0;
    for (const auto& test : tests)
        found += test.toObject().value(QStringLiteral("verdict")) == QLatin1String(verdict) ? 1 : 0;
    return found;
}

}  // namespace

bool FactoryReport::write(const WindowShell& shell, const QJsonArray& tests) {
    const _gui_menu_ menu = shell.menuRecord();
    const QJsonObject versions{
        {QStringLiteral("firmware"), fieldText(menu.firmwareVersion)},
        {QStringLiteral("kernel"), fieldText(menu.kernelVersion)},
        {QStringLiteral("mainBoard"), fieldText(menu.mainBoardVersion)},
        {QStringLiteral("microcontroller"), fieldText(menu.ioBoardVersion)},
    };
    const QJsonObject report{
        {QStringLiteral("format"), kFormat},
        {QStringLiteral("serial"), fieldText(menu.serial)},
        {QStringLiteral("versions"), versions},
        {QStringLiteral("written"), Clock::now().toString(Qt::ISODate)},
        {QStringLiteral("passed"), count(tests, "pass")},
        {QStringLiteral("failed"), count(tests, "fail")},
        {QStringLiteral("tests"), tests},
    };
    const QString path = DevicePaths::at(QStringLiteral("/mnt/data/factory_report.json"));
    const QString fresh = path + QStringLiteral(".new");
    // One that a power cut has left behind.
    QFile::remove(fresh);
    errno = 0;
    const bool written = Disk::writeNew(fresh, QJsonDocument(report).toJson()) &&
                         std::rename(QFile::encodeName(fresh).constData(),
                                     QFile::encodeName(path).constData()) == 0 &&
                         Disk::syncFolder(QFileInfo(path).path());
    if (!written) {
        qCWarning(factoryLog, "%s cannot be written: %s", qUtf8Printable(path),
                  std::strerror(errno));
        QFile::remove(fresh);
    }
    return written;
}
