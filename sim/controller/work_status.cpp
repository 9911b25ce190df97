#include "sim/controller/work_status.h"

#include <QRegularExpression>

namespace work {
namespace {

constexpr int kDay = 24 * 60;

int startMinutes(const _byte4_time_se_& range) {
    return range.startHour * 60 + range.startMinute;
}

int endMinutes(const _byte4_time_se_& range) {
    return range.endHour * 60 + range.endMinute;
}

int attendanceStatus(const OperationBlock& operation, const QDateTime& now) {
    if (operation.attendanceMode > AttendanceRule::Chosen)
        return operation.attendanceMode - AttendanceRule::Chosen;  // fixed to one event

    const int day = now.date().dayOfWeek();
    const bool holiday = day == Qt::Sunday;
    bool saturday = day == Qt::Saturday;
    if (holiday) {
        if (operation.holidayRule != HolidayRule::AsWeekday &&
            operation.holidayRule != HolidayRule::AsSaturday)
            return 0;
        saturday = operation.holidayRule == HolidayRule::AsSaturday;
    }
    if (contains(saturday ? operation.saturdayIn : operation.weekdayIn, now.time()))
        return 1;
    if (contains(saturday ? operation.saturdayOut : operation.weekdayOut, now.time()))
        return 2;
    return 0;
}

int mealStatus(const _gui_menu_& settings, const QTime& time) {
    const OperationBlock& operation = settings.operation;
    const quint8 off[] = {operation.attendanceMode, operation.lunchOff, operation.saveSimpleAccess,
                          operation.supperOff};
    for (int meal = 0; meal < 4; ++meal) {
        if (off[meal] == 0 && contains(mealPeriod(settings, Breakfast + meal), time))
            return meal + 1;
    }
    return 0;
}

}  // namespace

bool contains(const _byte4_time_se_& range, const QTime& time) {
    const int start = startMinutes(range);
    const int end = endMinutes(range);
    const int minute = time.hour() * 60 + time.minute();
    return start <= end ? minute >= start && minute < end : minute >= start || minute < end;
}

int statusAt(const _gui_menu_& settings, const QDateTime& now) {
    switch (settings.setup.operation) {
        case Operation::Attendance:
            return attendanceStatus(settings.operation, now);
        case Operation::Meals:
            return mealStatus(settings, now.time());
        default:
            return 0;
    }
}

int modeOf(const _gui_menu_& settings, int status) {
    if (status < 1 || status > 4)
        return AccessOnly;
    if (settings.setup.operation == Operation::Meals)
        return Breakfast + status - 1;
    return status == 4 ? Return : status;
}

QDateTime nextChange(const _gui_menu_& settings, const QDateTime& now) {
    const int present = statusAt(settings, now);
    QDateTime minute(now.date(), QTime(now.time().hour(), now.time().minute()));
    for (int i = 0; i < kDay; ++i) {
        minute = minute.addSecs(60);
        if (statusAt(settings, minute) != present)
            break;
    }
    return minute;
}

const _byte4_time_se_& mealPeriod(const _gui_menu_& settings, int mode) {
    const OperationBlock& operation = settings.operation;
    switch (mode - Breakfast) {
        case 0:
            return operation.weekdayIn;
        case 1:
            return operation.weekdayOut;
        case 2:
            return operation.saturdayIn;
        default:
            return operation.saturdayOut;
    }
}

QDateTime lastBeginning(const _byte4_time_se_& range, const QDateTime& now) {
    const QDateTime today(now.date(), QTime(0, 0).addSecs(startMinutes(range) % kDay * 60));
    return today <= now ? today : today.addDays(-1);
}

std::optional<_byte4_time_se_> parseRange(const QString& text) {
    static const QRegularExpression form(
        QStringLiteral("^([0-9]{2}):([0-9]{2})~([0-9]{2}):([0-9]{2})$"));
    const QRegularExpressionMatch match = form.match(text);
    const auto number = [&match](int i) { return static_cast<quint8>(match.captured(i).toInt()); };
    const _byte4_time_se_ range{number(1), number(2), number(3), number(4)};
    if (!match.hasMatch() || range.startHour > 24 || range.startMinute > 59 || range.endHour > 24 ||
        range.endMinute > 59)
        return {};
    return range;
}

}  // namespace work
