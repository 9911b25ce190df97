#pragma once

#include <cstddef>
#include <cstdint>

/// The records that the terminal's user interface and the device controller share. They travel as
/// frame payloads byte for byte, so each is packed and its size and agreed offsets are proved
/// below. Integers are little-endian, texts are UTF-8 in fixed-width fields filled up with zeros.
/// docs/device-link.md lists every field with its values.

static_assert(__BYTE_ORDER__ == __ORDER_LITTLE_ENDIAN__,
              "records are copied as they lie in memory");

#pragma pack(push, 1)

/// A time of day range, "hh:mm~hh:mm". An end of 24:00 is the end of the day; a start behind the
/// end reaches across midnight.
struct _byte4_time_se_ {
    std::uint8_t startHour;
    std::uint8_t startMinute;
    std::uint8_t endHour;
    std::uint8_t endMinute;
};

/// Payload of SaveDdns.
struct DdnsBlock {
    std::uint8_t use;  // 1: in use
    char host[17];
    std::uint16_t port;
};

/// Payload of SaveRegistrationMode. Flags are 1 for "use".
struct RegistrationBlock {
    std::uint8_t on;
    std::uint8_t authMethod;  // 1 face, 2 face or card
    std::uint8_t autoId;
    std::uint8_t wearGlasses;
    std::uint8_t syncAutoZone;
    std::uint8_t retainUserData;
    std::uint8_t userLevel;  // 1 general user, 2 visitor
};

/// Payload of SaveFaceSettings.
struct FaceBlock {
    std::uint8_t securityLevel;  // 1 lowest .. 5 highest
    std::uint8_t camera;         // 0 infrared, 1 colour
    std::uint8_t saveThumbnail;
    std::uint8_t useThumbnail;
    std::uint8_t saveUnregistered;
};

/// Payload of SaveSoundSettings.
struct SoundBlock {
    std::uint8_t volume;  // 0 silent .. 10
    std::uint8_t alarmSound;
    std::uint8_t recognitionFailSound;
};

/// Payload of SaveScreenSettings.
struct ScreenBlock {
    std::uint8_t brightness;   // 1 .. 10
    std::uint8_t sleepMode;    // index into SleepMode::kSeconds
    std::uint8_t standbyMode;  // 0 clock, 1 chosen picture
    std::uint8_t statusLed;
    std::uint8_t menuTimeout;  // index into MenuTimeout::kSeconds
    std::uint8_t standbyPicture;
    std::uint8_t showThumbnail;
};

/// Payload of SaveDeviceSetup.
struct SetupBlock {
    std::uint32_t deviceNumber;
    char adminPassword[8];  // digits, empty for none
    std::uint8_t language;  // position in the language list
    std::uint8_t relayUse;
    std::uint8_t relayType;
    std::uint8_t doorOpenDuration;  // seconds
    std::uint8_t tamperSwitch;
    std::uint8_t syncTime;
    std::uint8_t quickRegistration;
    std::uint8_t authMethod;
    std::uint8_t demo;         // 1: results are marked as a demonstration
    std::uint8_t alarmMode;    // 0 none, 1 arm, 2 disarm
    std::uint8_t readerMode;   // 0 in, 1 out
    std::uint8_t serviceMode;  // 0 in service, 1 out of service
    std::uint8_t visitorCall;  // 1: the live view offers the visitor call
    std::uint8_t operation;    // 0 access only, 1 attendance, 2 meals
    std::uint8_t buttonUse;    // 1: the exit button opens the door
};

/// The terminal's own network.
struct AddressBlock {
    std::uint8_t dhcp;  // 0 fixed address, 1 by DHCP
    std::uint8_t address[4];
    std::uint8_t mask[4];
    std::uint8_t gateway[4];
    std::uint8_t dns[4];
    std::uint8_t managerAddress[4];
    std::uint16_t managerPort;
};

/// Payload of SaveNetwork when it comes from the terminal's own screens.
struct NetworkBlock {
    std::uint8_t useManager;     // 1: the management service is in use
    std::uint8_t connectPeriod;  // seconds between attempts to connect to it
    std::uint8_t checkPeriod;    // seconds between checks of the connection
    AddressBlock own;
};

/// Attendance or meal operation; meals store their values in the same bytes. The comment's second
/// half is the meaning with meals.
struct OperationBlock {
    std::uint8_t attendanceMode;    // 0 automatic .. 5 return | breakfast off
    std::uint8_t lunchOff;          // kept                    | lunch off
    std::uint8_t saveSimpleAccess;  // 1: saved                | dinner off
    std::uint8_t supperOff;         // kept                    | supper off
    std::uint8_t doorOpenSetting;   // 0 always, 1, 2          | duplicate use: 0 once, 1 repeated
    std::uint8_t doorOpenTime;      // seconds 1 .. 20         | lamp time in seconds 1 .. 20
    std::uint8_t forcedOpenOff;     // 1: schedule not used    | lamp: 0 on success, 1 on failure
    std::uint8_t forcedCloseOff;    // 1: schedule not used    | kept
    _byte4_time_se_ forcedOpen;
    _byte4_time_se_ forcedClose;
    _byte4_time_se_ weekdayIn;    // | breakfast
    _byte4_time_se_ weekdayOut;   // | lunch
    _byte4_time_se_ saturdayIn;   // | dinner
    _byte4_time_se_ saturdayOut;  // | supper
    std::uint8_t holidayRule;     // 0 none, 1 as weekdays, 2 as Saturday | kept
    std::uint8_t saveRecognitionFail;
    std::uint8_t mealCountView;  // kept | 0 shown, 1 not shown
};

/// Numbers of users that the device controller holds.
struct UserCounts {
    std::uint32_t all;
    std::uint32_t general;
    std::uint32_t admin;
    std::uint32_t inOut;
    std::uint32_t faceOnly;
    std::uint32_t visitor;
    std::uint32_t unsent;  // not yet uploaded to the access controller
};

/// The settings record as the device controller holds it.
struct _gui_menu_ {
    std::uint8_t commissioned;    // 0: not set up yet, no screen times out
    std::uint8_t managerControl;  // 1: the management service may control the terminal
    std::uint8_t reserved1[2];
    char serial[24];
    char customerId[16];
    UserCounts users;
    std::uint8_t liveSeconds;            // live view without a face
    std::uint8_t resultSeconds;          // recognition result
    std::uint8_t paymentDoneSeconds;     // payment completed
    std::uint8_t attendanceDoneSeconds;  // attendance confirmed
    std::uint8_t reserved2[9];
    DdnsBlock ddns;
    RegistrationBlock registration;
    FaceBlock face;
    SoundBlock sound;
    ScreenBlock screen;
    SetupBlock setup;
    NetworkBlock network;
    OperationBlock operation;
    char firmwareVersion[16];
    char kernelVersion[16];
    char mainBoardVersion[16];
    char ioBoardVersion[16];
    std::uint8_t reserved3[101];
};

/// One user as the device controller stores it.
struct _gui_user_ {
    char userId[16];
    char customerId[16];      // up to 11 characters
    char name[100];           // up to 32 characters
    std::uint8_t authMethod;  // 0 card, 1 face, 2 face or card, 3 face and card, 4 face and ID
    std::uint8_t level;       // 0 administrator, 1 general user, 2 visitor
    std::uint8_t rights;      // 0 alarm and in/out, 1 in/out only
    std::uint8_t glasses;     // 1: wears glasses
    std::uint8_t facePresent;
    std::uint8_t cardPresent;
    std::uint8_t cardType;
    std::uint8_t reissueNumber;
    char nationCode[4];
    char cardNumber[16];
    char cardTemplate[128];
    char registrationTime[20];  // "yyyy-MM-dd hh:mm:ss"
    char timeSchedule[32];
    char restrictTime[32];
    char destination[32];
    char picture[64];  // file name, without folder
    std::uint8_t sensitivity;
    std::uint8_t enrolMode;  // 0 .. 5
    std::uint8_t origin;     // 0 terminal, 1 management service, 2 kiosk enrolment
    std::uint8_t reserved[15];
};

/// A day; a year of 0 is no day.
struct RecordDate {
    std::uint16_t year;
    std::uint8_t month;
    std::uint8_t day;
};

/// A query for logs.
struct GUI_USERLOG {
    std::uint8_t kind;  // 1: userId is given
    char userId[11];
    std::uint8_t reserved1[5];
    std::uint8_t period;      // 0 all, 1 today, 2 last 7 days, 3 last 30 days, 4 the dates below
    std::uint8_t viewType;    // 0 all, 1 successes, 2 failures
    std::uint8_t authMethod;  // 0 all, otherwise the user's method plus 1
    std::uint32_t count;
    std::uint32_t start;
    RecordDate from;
    RecordDate to;
    std::uint8_t tag;  // comes back with what answers the query
    std::uint8_t reserved2[3];
};

/// One access event.
struct GUI_LOGDATA {
    std::uint32_t number;
    char userId[16];
    char name[100];
    char cardNumber[16];
    std::uint8_t cardType;
    std::uint8_t reissueNumber;
    std::uint8_t authMethod;
    std::uint8_t inOut;  // operating mode, see docs/device-link.md
    std::uint8_t manageMode;
    std::uint8_t eventStatus;  // 0 refused, 1 accepted
    std::uint8_t payCount;
    std::uint8_t score;  // percent
    std::uint8_t year;   // since 2000
    std::uint8_t month;
    std::uint8_t day;
    std::uint8_t hour;
    std::uint8_t minute;
    std::uint8_t second;
    char infraredPicture[64];  // file names, without folder
    char visiblePicture[64];
    std::uint8_t reserved[6];
};

/// How the controller stands with the access controller.
struct HostInfo {
    std::uint8_t connected;
    std::uint8_t reserved1;
    std::uint16_t port;
    std::uint8_t address[4];
    char name[32];
    std::uint8_t reserved2[4];
};

/// One enrolled user's data for the management service.
struct info_s {
    _gui_user_ user;
    char visiblePicture[64];  // file name, without folder
    char templateFile[64];
    std::uint8_t autoEnrolled;
    std::uint8_t removeUserData;
};

/// Meals taken in the present periods.
struct MEAL_COUNT {
    std::uint32_t breakfast;
    std::uint32_t lunch;
    std::uint32_t dinner;
    std::uint32_t supper;
};

/// Payload of EventReported: the access event that the management service has confirmed.
struct EventReported {
    std::uint32_t number;
    char userId[16];
    char cardNumber[16];
    std::uint8_t authMethod;
    std::uint8_t inOut;
    std::uint8_t eventStatus;
    std::uint8_t payCount;
    std::uint8_t year;  // since 2000
    std::uint8_t month;
    std::uint8_t day;
    std::uint8_t hour;
    std::uint8_t minute;
    std::uint8_t second;
    std::uint8_t reserved[22];
};

/// Payload of UserReported: an enrolled user and what the management service made of the report.
struct UserReported {
    char userId[16];
    char name[100];
    char cardNumber[16];
    std::uint8_t authMethod;
    std::uint8_t level;
    std::uint8_t autoEnrolled;
    std::uint8_t removeUserData;
    std::uint16_t resultCode;  // of the service: 1000 when it has the user, 0 without an answer
    std::uint8_t reserved[2];
};

/// Payload of SaveOperationSettings: the operation block without its times.
struct OperationSettings {
    std::uint8_t attendanceMode;
    std::uint8_t lunchOff;
    std::uint8_t saveSimpleAccess;
    std::uint8_t supperOff;
    std::uint8_t doorOpenSetting;
    std::uint8_t doorOpenTime;
    std::uint8_t forcedOpenOff;
    std::uint8_t forcedCloseOff;
    _byte4_time_se_ forcedOpen;
    _byte4_time_se_ forcedClose;
    std::uint8_t saveRecognitionFail;
    std::uint8_t mealCountView;
};

/// Payload of SaveOperationTimes: the operation block's times.
struct OperationTimes {
    _byte4_time_se_ weekdayIn;
    _byte4_time_se_ weekdayOut;
    _byte4_time_se_ saturdayIn;
    _byte4_time_se_ saturdayOut;
    std::uint8_t holidayRule;
};

/// Payload of SaveNetwork when it comes from the management service: the network block without what
/// is none of the service's business.
struct ServiceNetwork {
    std::uint8_t useManager;
    std::uint8_t address[4];
    std::uint8_t mask[4];
    std::uint8_t gateway[4];
    std::uint8_t dns[4];
    std::uint8_t managerAddress[4];
    std::uint16_t managerPort;
};

/// Payload of SetClock.
struct ClockTime {
    std::uint8_t year;  // since 2000
    std::uint8_t month;
    std::uint8_t day;
    std::uint8_t hour;
    std::uint8_t minute;
    std::uint8_t second;
};

/// Payload of UsbExport for the logs of some days: the first and the last one. Without days (all
/// zero) when all logs are wanted.
struct ExportDates {
    std::uint8_t fromYear;  // since 2000
    std::uint8_t fromMonth;
    std::uint8_t fromDay;
    std::uint8_t toYear;
    std::uint8_t toMonth;
    std::uint8_t toDay;
};

/// Payload of SystemStatus. A report may come without one and then is about the status alone.
struct StatusReport {
    std::uint8_t armed;  // 1: the site is armed
    std::uint8_t reserved[3];
    MEAL_COUNT meals;
};

/// Payload of TrackingBox: where the face is on the 480x800 picture.
struct TrackedFace {
    std::int16_t x;
    std::int16_t y;
    std::int16_t width;
    std::int16_t height;
    std::uint8_t state;   // 0 no face, 1 tracking, 2 recognised, 3 failed
    std::uint8_t reason;  // of a failure: 1 not registered, 2 not permitted
};

/// Payload of Recognised: a person known to the terminal, by face or card.
struct RecognitionResult {
    char userId[16];  // also the name of the pictures, with ".jpg"
    char customerId[16];
    char name[100];
    std::uint8_t result;           // 0 accepted, 1 no access time, 2 not permitted, 3 registered,
                                   // 4 meal already taken
    std::uint8_t authMethod;       // 0 by card, 1 by face
    std::uint8_t level;            // as the user's
    std::uint8_t rights;           // as the user's
    std::uint8_t score;            // percent, 0 for a card
    std::uint8_t demo;             // 1: a demonstration, nothing is recorded
    std::uint8_t askAttendance;    // 1: the person is to choose the attendance event
    std::uint8_t attendanceEvent;  // already recorded: 16 in, 17 out, 18 break, 19 return; else 0
    ClockTime time;
    std::uint8_t reserved[14];
};

/// Payload of VisitorCall.
struct VisitorCallReport {
    ClockTime time;
    char infraredPicture[64];  // file names, without folder
    char visiblePicture[64];
    std::uint8_t reserved[2];
};

#pragma pack(pop)

static_assert(sizeof(_byte4_time_se_) == 4);
static_assert(sizeof(DdnsBlock) == 20);
static_assert(sizeof(RegistrationBlock) == 7);
static_assert(sizeof(FaceBlock) == 5);
static_assert(sizeof(SoundBlock) == 3);
static_assert(sizeof(ScreenBlock) == 7);
static_assert(sizeof(SetupBlock) == 27);
static_assert(sizeof(NetworkBlock) == 26);
static_assert(sizeof(OperationBlock) == 35);
static_assert(sizeof(MEAL_COUNT) == 16);

static_assert(sizeof(_gui_menu_) == 380);
static_assert(offsetof(_gui_menu_, commissioned) == 0);
static_assert(offsetof(_gui_menu_, serial) == 4);
static_assert(offsetof(_gui_menu_, customerId) == 28);
static_assert(offsetof(_gui_menu_, users) == 44);
static_assert(offsetof(_gui_menu_, liveSeconds) == 72);
static_assert(offsetof(_gui_menu_, ddns) == 85);
static_assert(offsetof(_gui_menu_, registration) == 105);
static_assert(offsetof(_gui_menu_, face) == 112);
static_assert(offsetof(_gui_menu_, sound) == 117);
static_assert(offsetof(_gui_menu_, screen) == 120);
static_assert(offsetof(_gui_menu_, screen.menuTimeout) == 124);
static_assert(offsetof(_gui_menu_, setup) == 127);
static_assert(offsetof(_gui_menu_, setup.operation) == 152);
static_assert(offsetof(_gui_menu_, network.useManager) == 154);
static_assert(offsetof(_gui_menu_, operation) == 180);
static_assert(offsetof(_gui_menu_, firmwareVersion) == 215);

static_assert(sizeof(_gui_user_) == 486);
static_assert(offsetof(_gui_user_, userId) == 0);
static_assert(offsetof(_gui_user_, customerId) == 16);
static_assert(offsetof(_gui_user_, name) == 32);
static_assert(offsetof(_gui_user_, authMethod) == 132);
static_assert(offsetof(_gui_user_, cardNumber) == 144);
static_assert(offsetof(_gui_user_, picture) == 404);

static_assert(sizeof(GUI_USERLOG) == 40);
static_assert(offsetof(GUI_USERLOG, userId) == 1);
static_assert(offsetof(GUI_USERLOG, period) == 17);
static_assert(offsetof(GUI_USERLOG, viewType) == 18);
static_assert(offsetof(GUI_USERLOG, authMethod) == 19);
static_assert(offsetof(GUI_USERLOG, count) == 20);
static_assert(offsetof(GUI_USERLOG, start) == 24);
static_assert(offsetof(GUI_USERLOG, from) == 28);
static_assert(offsetof(GUI_USERLOG, tag) == 36);

static_assert(sizeof(GUI_LOGDATA) == 284);
static_assert(sizeof(HostInfo) == 44);
static_assert(sizeof(info_s) == 616);
static_assert(sizeof(EventReported) == 68);
static_assert(sizeof(UserReported) == 140);

static_assert(sizeof(OperationSettings) == 18);
static_assert(sizeof(OperationTimes) == 17);
static_assert(sizeof(ServiceNetwork) == 23);
static_assert(sizeof(ClockTime) == 6);
static_assert(sizeof(ExportDates) == 6);
static_assert(sizeof(StatusReport) == 20);
static_assert(sizeof(TrackedFace) == 10);
static_assert(offsetof(TrackedFace, state) == 8);
static_assert(sizeof(RecognitionResult) == 160);
static_assert(offsetof(RecognitionResult, name) == 32);
static_assert(offsetof(RecognitionResult, result) == 132);
static_assert(offsetof(RecognitionResult, time) == 140);
static_assert(sizeof(VisitorCallReport) == 136);
