#pragma once

#include <cstdint>

/// The values of record fields that are agreed with the device controller, by the field that holds
/// them; docs/device-link.md lists them all.

/// What the terminal records: GUI_LOGDATA::inOut.
enum class WorkMode {
    AccessOnly = 0,
    In = 1,
    Out = 2,
    Break = 3,
    Reserved = 4,  ///< reported, but no screen has a use for it
    Return = 5,
    Breakfast = 6,
    Lunch = 7,
    Dinner = 8,
    Supper = 9,
};

/// Arrangements at the reader, of SetupBlock: what a recognition is used for.
enum class ReaderMode { In = 0, Out = 1 };
enum class ServiceMode { InService = 0, OutOfService = 1 };
enum class AlarmMode { None = 0, Arm = 1, Disarm = 2 };

/// SetupBlock::operation
namespace Operation {
enum : std::uint8_t { AccessOnly = 0, Attendance = 1, Meals = 2 };
}

/// OperationBlock::attendanceMode
namespace AttendanceRule {
enum : std::uint8_t { ByTime = 0, Chosen = 1, In = 2, Out = 3, Break = 4, Return = 5 };
}

/// OperationBlock::doorOpenSetting
namespace DoorRule {
enum : std::uint8_t { Always = 0, OnArrival = 1, OnLeaving = 2 };
}

/// OperationBlock::doorOpenSetting with meals
namespace MealRule {
enum : std::uint8_t { Once = 0, Repeated = 1 };
}

/// OperationBlock::holidayRule
namespace HolidayRule {
enum : std::uint8_t { NoTimes = 0, AsWeekday = 1, AsSaturday = 2 };
}

/// OperationBlock::mealCountView
namespace MealCountView {
enum : std::uint8_t { Shown = 0, Hidden = 1 };
}

/// ScreenBlock::sleepMode: seconds by choice, 0 never
namespace SleepMode {
constexpr std::uint16_t kSeconds[] = {0, 30, 60, 180, 300, 600};
}

/// ScreenBlock::menuTimeout: seconds by choice, 0 never
namespace MenuTimeout {
constexpr std::uint16_t kSeconds[] = {10, 20, 30, 0};
}

/// ScreenBlock::standbyMode
namespace StandbyMode {
enum : std::uint8_t { Clock = 0, ChosenPicture = 1 };
}

/// _gui_user_::authMethod, SetupBlock::authMethod; _gui_user_::enrolMode adds the last one.
namespace AuthMethod {
enum : std::uint8_t {
    Card = 0,
    Face = 1,
    FaceOrCard = 2,
    FaceAndCard = 3,
    FaceAndId = 4,
    FromLiveView = 5,
};
}

/// GUI_USERLOG::period
namespace LogPeriod {
enum : std::uint8_t { All = 0, Today = 1, Week = 2, Month = 3, FromTo = 4 };
}

/// GUI_USERLOG::viewType
namespace LogResult {
enum : std::uint8_t { All = 0, Accepted = 1, Refused = 2 };
}

/// _gui_user_::level
namespace UserLevel {
enum : std::uint8_t { Administrator = 0, General = 1, Visitor = 2 };
}

/// _gui_user_::rights
namespace UserRights {
enum : std::uint8_t { AlarmAndInOut = 0, InOutOnly = 1 };
}

/// _gui_user_::origin
namespace UserOrigin {
enum : std::uint8_t { Terminal = 0, Service = 1, Kiosk = 2 };
}

/// RecognitionResult::result
namespace Verdict {
enum : std::uint8_t {
    Accepted = 0,
    NoAccessTime = 1,
    NotPermitted = 2,
    Registered = 3,
    MealTaken = 4
};
}

/// TrackedFace::state. A failure's reason is one of command::failure.
namespace FaceState {
enum : std::uint8_t { NoFace = 0, Tracking = 1, Recognised = 2, Failed = 3 };
}

/// The bits of a self-check word.
namespace SelfCheckFault {
constexpr std::uint32_t kCamera = 0x01;
constexpr std::uint32_t kCardReader = 0x02;
constexpr std::uint32_t kTouchPanel = 0x04;
constexpr std::uint32_t kMemory = 0x08;
constexpr std::uint32_t kNetwork = 0x10;
constexpr std::uint32_t kTamper = 0x40;
}  // namespace SelfCheckFault
