#pragma once

#include <QString>
#include <cstddef>

/// The titles that the screens are registered with, in registry order. They are as irregular as
/// the screens' history; who means a screen names it from here.
namespace screen_title {

template <std::size_t size>
constexpr QLatin1String title(const char (&text)[size]) {
    return QLatin1String(text, static_cast<int>(size) - 1);
}

inline constexpr QLatin1String kBoot = title("bootWindow");
inline constexpr QLatin1String kStandby = title("stayWindow");
inline constexpr QLatin1String kLive = title("liveWindow");
inline constexpr QLatin1String kMenu = title("zelMenuWindow");
inline constexpr QLatin1String kUsbMenu = title("usbMenuWindow");
inline constexpr QLatin1String kNetworkMenu = title("networkMenuWindow");
inline constexpr QLatin1String kPing = title("pingWindow");
inline constexpr QLatin1String kTcpIp = title("tcpIpWindow");
inline constexpr QLatin1String kDdns = title("ddnsWindow");
inline constexpr QLatin1String kEnvironment = title("enviWindow");
inline constexpr QLatin1String kEnvironmentFace = title("enviFaceWindow");
inline constexpr QLatin1String kEnvironmentScreen = title("enviScreenWindow");
inline constexpr QLatin1String kStandbyScreen = title("enviScreen_StayWindow");
inline constexpr QLatin1String kStandbyPicture = title("enviscreen_imageselect");
inline constexpr QLatin1String kEnvironmentSound = title("enviSoundWindow");
inline constexpr QLatin1String kAlarmSound = title("enviSound_Alarm");
inline constexpr QLatin1String kRecognitionFailSound = title("enviSound_RecogFail");
inline constexpr QLatin1String kUsbFilePicker = title("usbUploadFileSelector");
inline constexpr QLatin1String kUserMenu = title("userMenuWindow");
inline constexpr QLatin1String kAttendance = title("workMenuWindow");
inline constexpr QLatin1String kMeals = title("foodMenuWindow");
inline constexpr QLatin1String kEnrolMenu = title("userEnrollMenuWindow");
inline constexpr QLatin1String kEnrolQualification = title("userEnroll_qualWindow");
inline constexpr QLatin1String kEnrolCard = title("userEnroll_cardTagWindow");
inline constexpr QLatin1String kEnrolCardAgain = title("userEnroll_reCardTagWindow");
inline constexpr QLatin1String kSetupDefault = title("setupDefaultWindow");
inline constexpr QLatin1String kSetupMenu = title("setupMenuWindow");
inline constexpr QLatin1String kEnrolId = title("userEnroll_IDWindow");
inline constexpr QLatin1String kEnrolFace = title("userEnroll_FaceWindow");
inline constexpr QLatin1String kInfoReader = title("info_readerWindow");
inline constexpr QLatin1String kInfoConnection = title("info_conWindow");
inline constexpr QLatin1String kResult = title("recognizeWindow");
inline constexpr QLatin1String kNumberEntry = title("inputSubWindow");
inline constexpr QLatin1String kUserSearch = title("user_searchWindow");
inline constexpr QLatin1String kUserSearchCard = title("userSearch_cardWindow");
inline constexpr QLatin1String kUserSearchFace = title("userSearch_faceWindow");
inline constexpr QLatin1String kUserSearchId = title("userSearch_idWindow");
inline constexpr QLatin1String kUserInfo = title("userSearch_InfoWindow");
inline constexpr QLatin1String kUserGroup = title("userGroupInfoWindow");
inline constexpr QLatin1String kLogSearch = title("info_logSearchWindow");
inline constexpr QLatin1String kUserUpload = title("userInfo_uploadWindow");
inline constexpr QLatin1String kLogList = title("info_logListWindow");
inline constexpr QLatin1String kKeyData = title("info_keyDataWindow");
inline constexpr QLatin1String kUsbLogDates = title("UsbOutLogWindow");
inline constexpr QLatin1String kFactoryMenu = title("factoryMenuWindow");
inline constexpr QLatin1String kFactoryPower = title("f_pwrTestWindow");
inline constexpr QLatin1String kFactoryLcd = title("f_lcdTestWindow");
inline constexpr QLatin1String kFactoryTouch = title("f_lcdTouchTestWindow");
inline constexpr QLatin1String kFactoryPixels = title("f_lcdPixelTestWindow");
inline constexpr QLatin1String kFactorySound = title("f_soundTestWindow");
inline constexpr QLatin1String kFactoryLed = title("f_ledTestWindow");
inline constexpr QLatin1String kFactoryIo = title("f_ioTestWindow");
inline constexpr QLatin1String kFactoryProximity = title("f_tofTestWindow");
inline constexpr QLatin1String kFactoryLight = title("f_lightTestWindow");
inline constexpr QLatin1String kFactoryNetwork = title("f_netTestWindow");
inline constexpr QLatin1String kFactoryCamera = title("f_camTestWindow");
inline constexpr QLatin1String kFactoryCard = title("f_cardTestWindow");
inline constexpr QLatin1String kFactoryVersions = title("f_verTestWindow");
inline constexpr QLatin1String kFactoryClock = title("f_rtcTestWindow");
inline constexpr QLatin1String kFactoryMac = title("f_macRegTestWindow");
inline constexpr QLatin1String kFactoryMemory = title("f_memoryTestWindow");
inline constexpr QLatin1String kUpgrading = title("upgradingWindow");
inline constexpr QLatin1String kCloud = title("cloudWindow");
inline constexpr QLatin1String kPassword = title("InputAdminPassword");
inline constexpr QLatin1String kFactoryColours = title("colorTestWindow");
inline constexpr QLatin1String kRegistrationMode = title("setupRegistModeWindow");
inline constexpr QLatin1String kDestination = title("InputDestinationForm");

}  // namespace screen_title
