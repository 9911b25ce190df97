#include "app/message_routes.h"

#include <algorithm>
#include <iterator>

#include "app/screen_titles.h"
#include "link/command_code.h"
#include "link/device_records.h"

namespace {

using namespace command;
using namespace screen_title;
constexpr auto Shell = RouteRule::Shell;
constexpr auto ActiveScreen = RouteRule::ActiveScreen;
constexpr auto AnyActive = RouteRule::AnyActive;
constexpr auto NamedScreen = RouteRule::NamedScreen;
constexpr auto ScreenFirst = RouteRule::ScreenFirst;
constexpr auto NoAction = RouteRule::NoAction;

// In ascending order of the codes, so that a row is found by bisection.
constexpr MessageRoute kRoutes[] = {
    {Quit, Shell, 0, {}},
    {SystemStatus, Shell, 0, {}},
    {ScreenClosedAnswer, NoAction, 0, {}},
    {Settings, Shell, sizeof(_gui_menu_), {}},
    {SettingsChanged, Shell, sizeof(_gui_menu_), {}},
    {TimeNotice, ActiveScreen, 0, kSetupMenu},
    {UserStored, AnyActive, 0, {}},
    {CardTagged, ActiveScreen, 0, kEnrolCard, kEnrolCardAgain},
    {UserIdChecked, AnyActive, 0, {}},
    {EnrolmentRefused, ScreenFirst, 0, kEnrolCard, kEnrolCardAgain},
    {UserDeleted, ActiveScreen, 0, kUserInfo},
    {UserDeleteResult, ScreenFirst, 0, kUserInfo},
    {UserGroupDeleted, NamedScreen, 0, kUserGroup},
    {UserCountsAnswer, AnyActive, sizeof(UserCounts), {}},
    {UsersUploaded, ActiveScreen, 0, kUserUpload},
    {UserChanged, ActiveScreen, 0, kUserInfo, kEnrolCard, kEnrolCardAgain},
    {CardEnrolled, ActiveScreen, 0, kEnrolCard, kEnrolCardAgain},
    {FaceSettingsSaved, ActiveScreen, 0, kEnvironmentFace},
    {ScreenSettingsSaved, ActiveScreen, 0, kEnvironmentScreen},
    {SoundSettingsSaved, ActiveScreen, 0, kEnvironmentSound},
    {Initialised, ActiveScreen, 0, kSetupDefault},
    {UsbState, ActiveScreen, 0, kUsbMenu},
    {UsbImported, ActiveScreen, 0, kUsbMenu},
    {UsbExported, ActiveScreen, 0, kUsbMenu},
    {FirmwareProgress, ActiveScreen, 0, kUsbMenu},
    {UsbProgress, ActiveScreen, 0, kUsbMenu},
    {ConnectionInfo, ActiveScreen, sizeof(HostInfo), kInfoConnection},
    {UserFound, NamedScreen, 0, kUserSearch},
    {UserSearchStarted, NoAction, 0, {}},
    {LogPage, ActiveScreen, 0, kLogList},
    {LogCount, NamedScreen, sizeof(std::uint32_t), kLogSearch},
    {DeviceSetupSaved, ActiveScreen, 0, kSetupMenu},
    {RegistrationModeSaved, ActiveScreen, 0, kRegistrationMode},
    {OperationSettingsSaved, ActiveScreen, 0, kMeals, kAttendance},
    {NetworkSaved, AnyActive, 0, {}},
    {DdnsSaved, ActiveScreen, 0, kDdns},
    {LinkTested, ActiveScreen, 0, kNetworkMenu},
    {FirmwareUpdateAnswer, Shell, 0, {}},
    {UsbSending, ActiveScreen, 0, kUsbMenu},
    {TrackingBox, ActiveScreen, sizeof(TrackedFace), kLive},
    {FaceEnrolled, ActiveScreen, 0, kEnrolFace},
    {Recognised, NamedScreen, sizeof(RecognitionResult), kResult},
    {RecognitionFailed, AnyActive, 0, {}},
    {AccessEvent, Shell, sizeof(GUI_LOGDATA), {}},
    {UnsentDataWaiting, Shell, 0, {}},
    {NumberChecked, ActiveScreen, 0, kNumberEntry},
    {SleepScreen, NamedScreen, 0, kStandby},
    {WakeScreen, NamedScreen, 0, kStandby},
    {ShowLiveView, AnyActive, 0, {}},
    {VisitorCall, Shell, sizeof(VisitorCallReport), {}},
    {AutomaticUserId, AnyActive, 0, {}},
    {FaceEnrolmentAbandoned, NoAction, 0, {}},
    {FullLogsDeleted, Shell, 0, {}},
    {TextSpoken, Shell, 0, {}},
    {UserEnrolled, Shell, sizeof(info_s), {}},
    {ControllerNote, Shell, 0, {}},
    {DoorOpened, NoAction, 0, {}},
    {UnsentDataReady, Shell, 0, {}},
    {LogStoreReport, Shell, 0, {}},
    {FactoryPowerReport, NamedScreen, 0, kFactoryPower},
    {FactoryLedReport, NamedScreen, 0, kFactoryLed},
    {FactoryIoReport, NamedScreen, 0, kFactoryIo},
    {FactoryIoStepDone, NamedScreen, 0, kFactoryIo},
    {FactoryProximityReport, NamedScreen, 0, kFactoryProximity},
    {FactoryLightReport, NamedScreen, 0, kFactoryLight},
    {FactoryRs422Report, NamedScreen, 0, kFactoryNetwork},
    {FactoryCameraReport, NamedScreen, 0, kFactoryCamera},
    {FactoryCameraSwitched, NamedScreen, 0, kFactoryCamera},
    {FactoryCardReport, NamedScreen, 0, kFactoryCard},
    {FactoryCardAntennaReport, NamedScreen, 0, kFactoryCard},
    {FactoryVersionReport, NamedScreen, 0, kFactoryVersions},
    {FactoryClockReport, NamedScreen, 0, kFactoryClock},
    {FactoryMacReport, NamedScreen, 0, kFactoryMac},
    {FactoryMemoryReport, NamedScreen, 0, kFactoryMemory},
    {FactoryPingReport, NamedScreen, 0, kFactoryNetwork},
    {FactoryTouchVersionReport, NamedScreen, 0, kFactoryVersions},
    {Ignored, NoAction, 0, {}},
    {ControllerEvent, Shell, 0, {}},
    {SelfCheck, Shell, sizeof(std::uint32_t), {}},
};

constexpr bool ascending() {
    for (std::size_t i = 1; i < std::size(kRoutes); ++i) {
        if (kRoutes[i - 1].command >= kRoutes[i].command)
            return false;
    }
    return true;
}
static_assert(ascending(), "one row per code, in order");

}  // namespace

const MessageRoute* findMessageRoute(std::uint16_t command) {
    const auto* row = std::lower_bound(
        std::begin(kRoutes), std::end(kRoutes), command,
        [](const MessageRoute& route, std::uint16_t code) { return route.command < code; });
    return row != std::end(kRoutes) && row->command == command ? row : nullptr;
}
