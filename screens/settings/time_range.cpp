#include "screens/settings/time_range.h"

#include <QStringList>
#include <optional>

namespace TimeRange {
namespace {

constexpr int kLeastLength = 11;
constexpr int kLastHour = 24;
constexpr int kLastMinute = 59;

/// The number that the digits of @p piece make, 0 without any; nothing if there is more than
/// digits. Numbers too large for a time stay too large.
std::optional<int> number(const QString& piece) {
    constexpr int kTooLarge = 100;
    int value = 0;
    for (const QChar digit : piece) {
        if (digit < QLatin1Char('0') || digit > QLatin1Char('9'))
            return std::nullopt;
        value = qMin(10 * value + digit.digitValue(), kTooLarge);
    }
    return value;
}

struct Time {
    int hour;
    int minute;

    bool isValid() const { return hour <= kLastHour && minute <= kLastMinute; }
};

std::optional<Time> readTime(const QString& text) {
    const QStringList pieces = text.split(QLatin1Char(':'));
    if (pieces.size() > 2)
        return std::nullopt;
    const auto hour = number(pieces.value(0));
    const auto minute = number(pieces.value(1));
    if (!hour || !minute)
        return std::nullopt;
    return Time{*hour, *minute};
}

}  // namespace

Reading getBetweenTime(const QString& text, _byte4_time_se_* range) {
    const QStringList halves = text.split(QLatin1Char('~'));
    if (text.size() < kLeastLength || halves.size() > 2)
        return Malformed;
    const auto start = readTime(halves.value(0));
    const auto end = readTime(halves.value(1));
    if (!start || !end)
        return Malformed;
    if (!start->isValid() || !end->isValid())
        return OutOfRange;
    const auto byte = [](int value) { return static_cast<std::uint8_t>(value); };
    *range = {byte(start->hour), byte(start->minute), byte(end->hour), byte(end->minute)};
    return Valid;
}

QString betweenTimeText(const _byte4_time_se_& range) {
    return QString::asprintf("%02d:%02d~%02d:%02d", range.startHour, range.startMinute,
                             range.endHour, range.endMinute);
}

int TimeToMin(int hour, int minute) {
    return hour * 60 + minute;
}

int CheckTime(const _byte4_time_se_& a, const _byte4_time_se_& b) {
    const int a1 = TimeToMin(a.startHour, a.startMinute);
    const int a2 = TimeToMin(a.endHour, a.endMinute);
    const int b1 = TimeToMin(b.startHour, b.startMinute);
    const int b2 = TimeToMin(b.endHour, b.endMinute);
    if (a1 == a2 || b1 == b2)
        return 0;
    const bool aWithinDay = a1 < a2;
    const bool bWithinDay = b1 < b2;
    const bool aAfterB = a1 >= b2;
    const bool aBeforeB = a2 <= b1;
    if (aWithinDay && bWithinDay)
        return aAfterB || aBeforeB ? 1 : 0;
    // The one within the day must lie in the gap of the one across midnight.
    if (aWithinDay != bWithinDay)
        return aAfterB && aBeforeB ? 1 : 0;
    return 0;
}

}  // namespace TimeRange
