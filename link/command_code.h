#pragma once

#include <cstddef>
#include <cstdint>

/// The commands of the device link, one row each: name, code, direction. The list is the only
/// place that holds a code; enum, names and tables come from it. An answer's code is the
/// request's code plus 1000.
///
/// G: sent by the terminal's user interface, C: sent by the device controller.
// clang-format off
#define ZEL_COMMANDS(X) \
    X(Greeting,                   1901, G) \
    X(QuitAcknowledged,           1902, G) \
    X(ScreenClosed,               1905, G) \
    X(PlaySound,                  1908, G) \
    X(StoreUser,                  1920, G) \
    X(StartEnrolment,             1921, G) \
    X(StartFaceCapture,           1922, G) \
    X(CheckUserId,                1923, G) \
    X(AbandonCardTag,             1926, G) \
    X(EnrolNetworkUser,           1927, G) \
    X(DeleteUser,                 1931, G) \
    X(DeleteUserGroup,            1932, G) \
    X(AskUserCounts,              1933, G) \
    X(UploadUsers,                1934, G) \
    X(ChangeUser,                 1940, G) \
    X(SaveFaceSettings,           1950, G) \
    X(SaveScreenSettings,         1951, G) \
    X(SetBrightness,              1952, G) \
    X(SetClock,                   1953, G) \
    X(SaveSoundSettings,          1954, G) \
    X(SetVolume,                  1955, G) \
    X(ChooseSound,                1956, G) \
    X(Initialise,                 1957, G) \
    X(Reboot,                     1958, G) \
    X(UsbMount,                   1960, G) \
    X(UsbImport,                  1962, G) \
    X(UsbExport,                  1963, G) \
    X(UsbImportFile,              1964, G) \
    X(SearchUser,                 1973, G) \
    X(AskLogPage,                 1975, G) \
    X(SearchLogs,                 1976, G) \
    X(SaveDeviceSetup,            1981, G) \
    X(SaveRegistrationMode,       1982, G) \
    X(SaveOperationSettings,      1983, G) \
    X(SaveOperationTimes,         1984, G) \
    X(SaveNetwork,                1986, G) \
    X(SaveDdns,                   1987, G) \
    X(TestLink,                   1989, G) \
    X(UpdateFirmware,             1990, G) \
    X(RecognitionHidden,          2001, G) \
    X(LivePicture,                2003, G) \
    X(CameraRun,                  2010, G) \
    X(RecognitionMode,            2011, G) \
    X(RecognitionKey,             2020, G) \
    X(AskUserData,                2026, G) \
    X(TextEntered,                2027, G) \
    X(CameraPictureStop,          2028, G) \
    X(EnrolmentFinished,          2029, G) \
    X(CameraPictureStart,         2030, G) \
    X(AbandonFaceEnrolment,       2031, G) \
    X(DeleteFullLogs,             2032, G) \
    X(SpeakText,                  2033, G) \
    X(BurnInTimer,                2035, G) \
    X(OpenDoor,                   2036, G) \
    X(EnrolmentOption,            2037, G) \
    X(AskUnsentLogs,              2039, G) \
    X(AskUnsentUsers,             2040, G) \
    X(UserReported,               2042, G) \
    X(EventReported,              2044, G) \
    X(FaceEnrolmentProgress,      2046, G) \
    X(FaceEnrolmentScreen,        2047, G) \
    X(FactoryMode,                4000, G) \
    X(FactoryLcdTest,             4002, G) \
    X(FactoryTouchTest,           4004, G) \
    X(FactoryPixelTest,           4006, G) \
    X(FactoryPowerTest,           4008, G) \
    X(FactorySoundTest,           4010, G) \
    X(FactoryLedTest,             4012, G) \
    X(FactoryIoTest,              4014, G) \
    X(FactoryProximityTest,       4016, G) \
    X(FactoryLightTest,           4018, G) \
    X(FactoryRs422Test,           4020, G) \
    X(FactoryCameraTest,          4022, G) \
    X(FactoryCameraSwitch,        4024, G) \
    X(FactoryCardTest,            4026, G) \
    X(FactoryCardAntennaTest,     4028, G) \
    X(FactoryColourTest,          4030, G) \
    X(FactoryVersionTest,         4032, G) \
    X(FactoryClockTest,           4034, G) \
    X(FactoryMacTest,             4036, G) \
    X(FactoryMemoryTest,          4038, G) \
    X(FactoryPingTest,            4040, G) \
    X(FactoryTouchVersion,        4042, G) \
    X(FactoryRestart,             4043, G) \
    X(FactoryMemoryReset,         4045, G) \
    X(UpdateMicrocontroller,      4046, G) \
    X(KeyClick,                   5000, G) \
    X(Quit,                       2901, C) \
    X(SystemStatus,               2902, C) \
    X(ScreenClosedAnswer,         2905, C) \
    X(Settings,                   2907, C) \
    X(SettingsChanged,            2908, C) \
    X(TimeNotice,                 2914, C) \
    X(UserStored,                 2920, C) \
    X(CardTagged,                 2921, C) \
    X(UserIdChecked,              2923, C) \
    X(EnrolmentRefused,           2924, C) \
    X(UserDeleted,                2930, C) \
    X(UserDeleteResult,           2931, C) \
    X(UserGroupDeleted,           2932, C) \
    X(UserCountsAnswer,                 2933, C) \
    X(UsersUploaded,              2934, C) \
    X(UserChanged,                2940, C) \
    X(CardEnrolled,               2947, C) \
    X(FaceSettingsSaved,          2950, C) \
    X(ScreenSettingsSaved,        2951, C) \
    X(SoundSettingsSaved,         2954, C) \
    X(Initialised,                2957, C) \
    X(UsbState,                   2960, C) \
    X(UsbImported,                2962, C) \
    X(UsbExported,                2963, C) \
    X(FirmwareProgress,           2964, C) \
    X(UsbProgress,                2966, C) \
    X(ConnectionInfo,             2972, C) \
    X(UserFound,                  2973, C) \
    X(UserSearchStarted,          2974, C) \
    X(LogPage,                    2975, C) \
    X(LogCount,                   2976, C) \
    X(DeviceSetupSaved,           2981, C) \
    X(RegistrationModeSaved,      2982, C) \
    X(OperationSettingsSaved,     2984, C) \
    X(NetworkSaved,               2986, C) \
    X(DdnsSaved,                  2987, C) \
    X(LinkTested,                 2989, C) \
    X(FirmwareUpdateAnswer,       2990, C) \
    X(UsbSending,                 2999, C) \
    X(TrackingBox,                3000, C) \
    X(FaceEnrolled,               3001, C) \
    X(Recognised,                 3010, C) \
    X(RecognitionFailed,          3011, C) \
    X(AccessEvent,                3020, C) \
    X(UnsentDataWaiting,          3021, C) \
    X(NumberChecked,              3023, C) \
    X(SleepScreen,                3026, C) \
    X(WakeScreen,                 3027, C) \
    X(ShowLiveView,               3028, C) \
    X(VisitorCall,                3029, C) \
    X(AutomaticUserId,            3030, C) \
    X(FaceEnrolmentAbandoned,     3031, C) \
    X(FullLogsDeleted,            3032, C) \
    X(TextSpoken,                 3033, C) \
    X(UserEnrolled,               3034, C) \
    X(ControllerNote,             3035, C) \
    X(DoorOpened,                 3036, C) \
    X(UnsentDataReady,            3038, C) \
    X(LogStoreReport,             3039, C) \
    X(FactoryPowerReport,         4009, C) \
    X(FactoryLedReport,           4013, C) \
    X(FactoryIoReport,            4014, C) \
    X(FactoryIoStepDone,          4015, C) \
    X(FactoryProximityReport,     4017, C) \
    X(FactoryLightReport,         4019, C) \
    X(FactoryRs422Report,         4021, C) \
    X(FactoryCameraReport,        4023, C) \
    X(FactoryCameraSwitched,      4025, C) \
    X(FactoryCardReport,          4027, C) \
    X(FactoryCardAntennaReport,   4028, C) \
    X(FactoryVersionReport,       4032, C) \
    X(FactoryClockReport,         4034, C) \
    X(FactoryMacReport,           4036, C) \
    X(FactoryMemoryReport,        4038, C) \
    X(FactoryPingReport,          4040, C) \
    X(FactoryTouchVersionReport,  4042, C) \
    X(Ignored,                    6001, C) \
    X(ControllerEvent,            6002, C) \
    X(SelfCheck,                  6003, C)
// clang-format on

/// Command codes by name.
namespace command {

enum Code : std::uint16_t {
#define ZEL_COMMAND_ENUMERATOR(name, code, direction) name = code,
    ZEL_COMMANDS(ZEL_COMMAND_ENUMERATOR)
#undef ZEL_COMMAND_ENUMERATOR
};

enum class Direction { ToController, FromController };

struct Description {
    const char* name;
    std::uint16_t code;
    Direction direction;
};

/// All commands in the order of the list.
const Description* all();
std::size_t count();

/// The name of @p code in @p direction, or "unknown"; for logs.
const char* name(std::uint16_t code, Direction direction);

}  // namespace command
