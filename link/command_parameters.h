#pragma once

#include <cstdint>

/// The values of a frame's two parameters that have a meaning of their own, by the command that
/// carries them. docs/device-link.md says the same for both sides.
namespace command {

/// First parameter of an answer that tells a result and has no values of its own below.
namespace answer {
enum : std::uint8_t { Done = 0, Failed = 1 };
}

/// Sounds of their own, in the payload of PlaySound.
namespace sound {
enum : std::uint16_t {
    FaceEnrolled = 5,
    FaceCapture = 6,
    FaceInUse = 8,
    Wake = 201,
    Accepted = 202,
    Error = 203,
};
}

/// ScreenClosed, first.
namespace closed {
enum : std::uint8_t { ByMenuTimeout = 1 };
}

/// Who has ordered it: DeleteUser, first; DeleteUserGroup, second.
namespace ordered {
enum : std::uint8_t { AtTerminal = 0, ByService = 1 };
}

/// DeleteUserGroup, first; UserGroupDeleted, second.
namespace user_group {
enum : std::uint8_t { General = 0, Administrators = 1, InOut = 2, All = 3, FaceOnly = 4 };
}

/// UploadUsers, first.
namespace upload {
enum : std::uint8_t { New = 0, All = 1 };
/// Second.
enum : std::uint8_t { Start = 0, Cancel = 1 };
}  // namespace upload

/// The commands that save settings, first. Two of them tell who saves.
namespace save {
enum : std::uint8_t { Settings = 1 };
enum : std::uint8_t { SetupAtTerminal = 1, SetupByService = 2 };     // SaveDeviceSetup
enum : std::uint8_t { TcpIp = 1, Cloud = 2, NetworkByService = 4 };  // SaveNetwork
}  // namespace save

/// ChooseSound, first.
namespace sound_choice {
enum : std::uint8_t { Alarm = 1, RecognitionFailure = 2 };
}

/// Initialise, first; Initialised, second.
namespace initialise {
enum : std::uint8_t { Logs = 0, Settings = 1, Everything = 2 };
}

/// The USB stick: UsbMount, first, and UsbState, first. An answer's unknown state is Gone.
namespace stick {
enum : std::uint8_t { Mount = 0, Check = 1 };
enum : std::uint8_t { Mounted = 0, Gone = 1, Present = 2, Mounting = 10 };
}  // namespace stick

/// What is exported or imported: UsbImport, UsbExport and their answers, first.
namespace transfer {
enum : std::uint8_t {
    Logs = 1,
    Users = 2,
    Settings = 3,
    Everything = 4,
    Background = 5,
    CardKeys = 7,
    Logo = 8,
    LogsOfDays = 9,
};
/// UsbExport of LogsOfDays, second.
enum : std::uint8_t { SomeDays = 0, AllDays = 1 };
/// UsbImported and UsbExported, second; Done, UpgradeFailed and Running
/// also of FirmwareProgress, first.
enum : std::uint8_t {
    Done = 0,           // upgrade: the terminal restarts
    NoStick = 1,        // as any value that is not listed
    UpgradeFailed = 1,  // the same
    NotExported = 2,
    TooManyUsers = 2,  // the rest only of imports
    TooManyAdministrators = 4,
    InvalidData = 5,
    NoValidFile = 6,
    Running = 10,
};
/// UsbProgress, first.
enum : std::uint8_t { Preparing = 0, Copying = 1, Completing = 2 };
/// UsbSending, first.
enum : std::uint8_t { Sending = 1, PreparingToSend = 2 };
}  // namespace transfer

/// SearchUser, first; UserFound, second.
namespace search {
enum : std::uint8_t { ByCard = 1, ById = 3, ByFace = 5 };
}

/// UserDeleted, first: why nobody was found, or whom to delete.
namespace asks {
enum : std::uint8_t { NotRegistered = 0, ToDelete = 1, NothingTagged = 2 };
/// Second: how was searched.
enum : std::uint8_t { ForFace = 0, ForCard = 1, ForOtherCard = 2, ForId = 3, ForCardKey = 4 };
}  // namespace asks

/// NumberChecked, first; any other value: not registered.
namespace number_check {
enum : std::uint8_t { Registered = 0, WrongLength = 2 };
}

/// TestLink, first; LinkTested, second.
namespace link_test {
enum : std::uint8_t { Server = 1, Ddns = 2 };
}

/// UpdateFirmware, first.
namespace firmware {
enum : std::uint8_t { Downloaded = 0, FromMenu = 1 };
}

/// LivePicture and FaceEnrolmentScreen, first.
namespace picture {
enum : std::uint8_t { Hidden = 0, Shown = 1 };
}

/// StartFaceCapture, first.
namespace capture {
enum : std::uint8_t { CameraTest = 2 };
}

/// CameraRun, first.
namespace camera {
enum : std::uint8_t { Off = 0, On = 1 };
/// Second.
enum : std::uint8_t { ForEnrolment = 1 };
}  // namespace camera

/// RecognitionMode, first.
namespace recognition {
enum : std::uint8_t { Off = 0, On = 1, Enrolment = 2 };
}

/// RecognitionKey, first. The attendance events are RecognitionResult::attendanceEvent too.
namespace key {
enum : std::uint8_t {
    State = 1,
    In = 16,
    Out = 17,
    Break = 18,
    Return = 19,
    PayOne = 32,
    PaySeveral = 33,  // as many as the second parameter says
    ScreenHidden = 34,
    PayCount = 35,
    DoorRing = 36,
};
}

/// BurnInTimer, first.
namespace burn_in {
enum : std::uint8_t { Darken = 0, Wake = 1 };
}

/// EnrolmentRefused, first; any other value: no answer.
namespace refused {
enum : std::uint8_t { StoreFull = 1, EnrolmentRunning = 2 };
}

/// UserStored and UserChanged, first: what has become of the record. Any other value: nothing.
namespace store {
enum : std::uint8_t {
    Done = 0,
    EnrolmentRunning = 2,
    TooManyAdministrators = 3,
    StoreFull = 4,
};
}

/// CardTagged, first: whose the card is now. Any other value: somebody else's, as before.
namespace tagged {
enum : std::uint8_t { Done = 0, OtherUsers = 1, OwnAlready = 2 };
}

/// UserIdChecked, first.
namespace id_check {
enum : std::uint8_t { Free = 0, InUse = 1, WrongLength = 2 };
}

/// FaceEnrolled, first; up to Progress the capture goes on.
namespace capture {
enum : std::uint8_t {
    Guidance = 0,  // what the person is to do, in the second
    Progress = 1,  // percent, in the second
    Done = 3,
    FaceInUse = 4,  // whose it is, in the payload
    SeveralFaces = 12,
    TooManyAdministrators = 13,
    NotClear = 14,
    IdInUse = 15,
};
/// Second of Guidance.
enum : std::uint8_t { WithoutGlasses = 0, Again = 2, WithGlasses = 3 };
}  // namespace capture

/// RecognitionFailed: who is refused and why, first; as TrackedFace::reason. How they tried,
/// second; as GUI_LOGDATA::authMethod.
namespace failure {
enum : std::uint8_t { None = 0, NotRegistered = 1, NotPermitted = 2 };
enum : std::uint8_t { ByCard = 0, ByFace = 1 };
}  // namespace failure

/// AccessEvent, first.
namespace event {
enum : std::uint8_t { New = 0, LeftOver = 1 };
}

/// LogStoreReport, first.
namespace log_store {
enum : std::uint8_t { Emptied = 0, NearlyFull = 1 };
}

/// FactoryMode, first, and the factory tests, first.
namespace factory {
enum : std::uint8_t { Enter = 0, Leave = 1 };
enum : std::uint8_t { Start = 0, Stop = 1 };
/// The steps of FactoryIoTest: its second parameter; FactoryIoReport and FactoryIoStepDone, first.
enum : std::uint8_t { Relay = 0, ExitButton = 1, TamperSwitch = 2 };
/// FactoryLedTest and FactoryLedReport, second.
enum : std::uint8_t { Red = 0, Green = 1, Blue = 2 };
/// FactoryCameraTest, FactoryCameraReport and FactoryCameraSwitch, second; FactoryCameraSwitched,
/// first.
enum : std::uint8_t { Infrared = 0, Colour = 1 };
/// How many sounds FactorySoundTest has: its second parameter, from 0 on.
constexpr std::uint8_t kSounds = 3;
}  // namespace factory

}  // namespace command
