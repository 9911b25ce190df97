#include "screens/factory/f_rtc_test.h"

#include "base/clock.h"
#include "link/command_code.h"
#include "link/command_parameters.h"
#include "link/device_records.h"

namespace {

/// The time of a report as it is read, be it one or not.
QString boardTime(const DeviceMessage& message) {
    const auto time = message.record<ClockTime>();
    return time ? QString::asprintf("%04d-%02d-%02d %02d:%02d:%02d", 2000 + time->year, time->month,
                                    time->day, time->hour, time->minute, time->second)
                : QString();
}

QString terminalTime(const DeviceMessage&) {
    return Clock::now().toString(QStringLiteral("yyyy-MM-dd HH:mm:ss"));
}

/// A clock that runs has a time.
std::optional<double> clockRuns(const DeviceMessage& message, const FactoryStep&) {
    const bool isTime =
        QDateTime::fromString(boardTime(message), QStringLiteral("yyyy-MM-dd HH:mm:ss")).isValid();
    if (message.p1 == command::answer::Done && !isTime)
        return command::answer::Failed;
    return message.p1;
}

/// To be compared with the other, not judged.
std::optional<double> shown(const DeviceMessage&, const FactoryStep&) {
    return 0;
}

constexpr FactoryStep kSteps[] = {
    {command::FactoryClockTest, 0, command::FactoryClockReport, "ListItem_FactoryBoardTime",
     nullptr, &clockRuns, nullptr, 0, 0, FactoryStep::ByFirstValue, FactoryStep::kAnswerTime,
     "board", &boardTime},
    {command::FactoryClockTest, 0, command::FactoryClockReport, "ListItem_FactoryTerminalTime",
     nullptr, &shown, nullptr, 0, 0, FactoryStep::ByFirstValue, FactoryStep::kAnswerTime,
     "terminal", &terminalTime},
};

}  // namespace

void f_rtcTest::built() {
    setSteps(kSteps);
}
