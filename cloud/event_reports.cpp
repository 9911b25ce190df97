#include "cloud/event_reports.h"

#include <QFile>
#include <QFileInfo>
#include <cstring>

#include "cloud/command_folder.h"
#include "link/device_message.h"

namespace {

constexpr qint64 kMaxPicture = qint64{1024} * 1024;

QString pictureText(const QString& name) {
    QFile file(CommandFolder::directory() + name);
    if (name.isEmpty() || name.contains(QLatin1Char('/')) || QFileInfo(file).isSymLink() ||
        file.size() > kMaxPicture || !file.open(QIODevice::ReadOnly))
        return {};
    return QString::fromLatin1(file.readAll().toBase64());
}

QString timeText(const GUI_LOGDATA& event) {
    const auto two = [](int number) {
        return QStringLiteral("%1").arg(number, 2, 10, QLatin1Char('0'));
    };
    return QStringLiteral("20%1-%2-%3 %4:%5:%6")
        .arg(two(event.year), two(event.month), two(event.day), two(event.hour), two(event.minute),
             two(event.second));
}

}  // namespace

namespace event_reports {

FR21_Parameter accessEvent(const GUI_LOGDATA& event) {
    FR21_Parameter report;
    report.authType = QString::number(event.authMethod);
    report.inoutMode = QString::number(event.inOut);
    report.manageMode = QString::number(event.manageMode);
    report.eventStatusCd = QString::number(event.eventStatus);
    report.payNum = QString::number(event.payCount);
    report.authTime = timeText(event);
    report.cardNo = fieldText(event.cardNumber);
    report.cardType = QString::number(event.cardType);
    report.reissueNo = QString::number(event.reissueNumber);
    report.authScore = QString::number(event.score);
    report.infImg = pictureText(fieldText(event.infraredPicture));
    report.visImg = pictureText(fieldText(event.visiblePicture));

    EventReported& record = report.record;
    record.number = event.number;
    std::memcpy(record.userId, event.userId, sizeof record.userId);
    std::memcpy(record.cardNumber, event.cardNumber, sizeof record.cardNumber);
    record.authMethod = event.authMethod;
    record.inOut = event.inOut;
    record.eventStatus = event.eventStatus;
    record.payCount = event.payCount;
    record.year = event.year;
    record.month = event.month;
    record.day = event.day;
    record.hour = event.hour;
    record.minute = event.minute;
    record.second = event.second;
    return report;
}

Parameter_UserData enrolledUser(const info_s& info) {
    const _gui_user_& user = info.user;
    Parameter_UserData report;
    report.userLevel = QString::number(user.level);
    report.authType = QString::number(user.authMethod);
    report.registTime = fieldText(user.registrationTime);
    report.cardNo = fieldText(user.cardNumber);
    report.cardType = QString::number(user.cardType);
    report.reissueNo = QString::number(user.reissueNumber);
    report.nationCd = fieldText(user.nationCode);
    report.cardTemplate = fieldText(user.cardTemplate);
    report.name = fieldText(user.name);
    report.visImg = pictureText(fieldText(info.visiblePicture));
    report.templateFile = fieldText(info.templateFile);
    report.autoEnrollment = QString::number(info.autoEnrolled);
    report.removeUserData = QString::number(info.removeUserData);

    UserReported& record = report.record;
    std::memcpy(record.userId, user.userId, sizeof record.userId);
    std::memcpy(record.name, user.name, sizeof record.name);
    std::memcpy(record.cardNumber, user.cardNumber, sizeof record.cardNumber);
    record.authMethod = user.authMethod;
    record.level = user.level;
    record.autoEnrolled = info.autoEnrolled;
    record.removeUserData = info.removeUserData;
    return report;
}

FR51_Parameter visitor(const QString& picture) {
    return {{}, pictureText(picture)};
}

}  // namespace event_reports
