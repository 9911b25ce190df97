#include "link/message_routes.h"

#include <algorithm>
#include <iterator>

#include "link/command_code.h"
#include "link/device_records.h"

namespace {

using namespace command;
constexpr auto Shell = RouteRule::Shell;
constexpr auto ActiveScreen = RouteRule::ActiveScreen;
constexpr auto AnyActive = RouteRule::AnyActive;
constexpr auto NamedScreen = RouteRule::NamedScreen;
constexpr auto NoAction = RouteRule::NoAction;

// In ascending order of the codes, so that a row is found by bisection.
constexpr MessageRoute kRoutes[] = {
    {Quit, Shell, 0, nullptr},
    {SystemStatus, Shell, 0, nullptr},
    {ScreenClosedAnswer, NoAction, 0, nullptr},
    {Settings, Shell, sizeof(_gui_menu_), nullptr},
    {SettingsChanged, Shell, sizeof(_gui_menu_), nullptr},
    {TimeNotice, NoAction, 0, nullptr},
    {UserStored, AnyActive, 0, nullptr},
    {CardTagged, ActiveScreen, 0, "userEnroll_cardTagWindow", "userEnroll_reCardTagWindow"},
    {UserIdChecked, AnyActive, 0, nullptr},
    {EnrolmentRefused, Shell, 0, nullptr},
    {UserDeleted, ActiveScreen, 0, "userSearch_InfoWindow"},
    {UserDeleteResult, Shell, 0, nullptr},
    {UserGroupDeleted, NamedScreen, 0, "userGroupInfoWindow"},
    {UserCountsAnswer, AnyActive, sizeof(UserCounts), nullptr},
    {UsersUploaded, ActiveScreen, 0, "userInfo_uploadWindow"},
    {UserChanged, ActiveScreen, 0, "userSearch_InfoWindow"},
    {CardEnrolled, ActiveScreen, 0, "userEnroll_cardTagWindow", "userEnroll_reCardTagWindow"},
    {FaceSettingsSaved, ActiveScreen, 0, "enviFaceWindow"},
    {ScreenSettingsSaved, ActiveScreen, 0, "enviScreenWindow"},
    {SoundSettingsSaved, ActiveScreen, 0, "enviSoundWindow"},
    {Initialised, ActiveScreen, 0, "setupDefaultWindow"},
    {UsbState, ActiveScreen, 0, "usbMenuWindow"},
    {UsbImported, ActiveScreen, 0, "usbMenuWindow"},
    {UsbExported, ActiveScreen, 0, "usbMenuWindow"},
    {FirmwareProgress, ActiveScreen, 0, "usbMenuWindow"},
    {UsbProgress, ActiveScreen, 0, "usbMenuWindow"},
    {ConnectionInfo, ActiveScreen, 0, "info_conWindow"},
    {UserFound, NamedScreen, 0, "user_searchWindow"},
    {UserSearchStarted, NoAction, 0, nullptr},
    {LogPage, ActiveScreen, 0, "info_logListWindow"},
    {LogCount, NamedScreen, sizeof(std::uint32_t), "info_logSearchWindow"},
    {DeviceSetupSaved, ActiveScreen, 0, "setupMenuWindow"},
    {RegistrationModeSaved, ActiveScreen, 0, "setupRegistModeWindow"},
    {OperationSettingsSaved, ActiveScreen, 0, "foodMenuWindow", "workMenuWindow"},
    {NetworkSaved, AnyActive, 0, nullptr},
    {DdnsSaved, ActiveScreen, 0, "ddnsWindow"},
    {LinkTested, ActiveScreen, 0, "networkMenuWindow"},
    {FirmwareUpdateAnswer, Shell, 0, nullptr},
    {UsbSending, ActiveScreen, 0, "usbMenuWindow"},
    {TrackingBox, ActiveScreen, sizeof(TrackedFace), "liveWindow"},
    {FaceEnrolled, ActiveScreen, 0, "userEnroll_FaceWindow"},
    {Recognised, NamedScreen, sizeof(RecognitionResult), "recognizeWindow"},
    {RecognitionFailed, AnyActive, 0, nullptr},
    {AccessEvent, Shell, sizeof(GUI_LOGDATA), nullptr},
    {UnsentDataWaiting, Shell, 0, nullptr},
    {NumberChecked, ActiveScreen, 0, "inputSubWindow"},
    {SleepScreen, NamedScreen, 0, "stayWindow"},
    {WakeScreen, NamedScreen, 0, "stayWindow"},
    {ShowLiveView, AnyActive, 0, nullptr},
    {VisitorCall, Shell, sizeof(VisitorCallReport), nullptr},
    {AutomaticUserId, ActiveScreen, 0, "userEnroll_qualWindow"},
    {FaceEnrolmentAbandoned, NoAction, 0, nullptr},
    {FullLogsDeleted, Shell, 0, nullptr},
    {TextSpoken, Shell, 0, nullptr},
    {UserEnrolled, Shell, sizeof(info_s), nullptr},
    {ControllerNote, Shell, 0, nullptr},
    {DoorOpened, NoAction, 0, nullptr},
    {UnsentDataReady, Shell, 0, nullptr},
    {LogStoreReport, Shell, 0, nullptr},
    {FactoryPowerReport, NamedScreen, 0, "f_pwrTestWindow"},
    {FactoryLedReport, NamedScreen, 0, "f_ledTestWindow"},
    {FactoryIoReport, NamedScreen, 0, "f_ioTestWindow"},
    {FactoryIoStepDone, NamedScreen, 0, "f_ioTestWindow"},
    {FactoryProximityReport, NamedScreen, 0, "f_tofTestWindow"},
    {FactoryLightReport, NamedScreen, 0, "f_lightTestWindow"},
    {FactoryRs422Report, NamedScreen, 0, "f_netTestWindow"},
    {FactoryCameraReport, NamedScreen, 0, "f_camTestWindow"},
    {FactoryCameraSwitched, NamedScreen, 0, "f_camTestWindow"},
    {FactoryCardReport, NamedScreen, 0, "f_cardTestWindow"},
    {FactoryCardAntennaReport, NamedScreen, 0, "f_cardTestWindow"},
    {FactoryVersionReport, NamedScreen, 0, "f_verTestWindow"},
    {FactoryClockReport, NamedScreen, 0, "f_rtcTestWindow"},
    {FactoryMacReport, NamedScreen, 0, "f_macRegTestWindow"},
    {FactoryMemoryReport, NamedScreen, 0, "f_memoryTestWindow"},
    {FactoryPingReport, NamedScreen, 0, "f_netTestWindow"},
    {FactoryTouchVersionReport, NamedScreen, 0, "f_lcdTouchTestWindow"},
    {Ignored, NoAction, 0, nullptr},
    {ControllerEvent, Shell, 0, nullptr},
    {SelfCheck, Shell, sizeof(std::uint32_t), nullptr},
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
