#pragma once

#include <QString>

/// The titles that the screens are registered with, in registry order. They are as irregular as
/// the screens' history; who means a screen names it from here.
namespace screen_title {

inline constexpr QLatin1String kBoot("bootWindow");
inline constexpr QLatin1String kStandby("stayWindow");
inline constexpr QLatin1String kLive("liveWindow");
inline constexpr QLatin1String kMenu("zelMenuWindow");
inline constexpr QLatin1String kUsbMenu("usbMenuWindow");
inline constexpr QLatin1String kNetworkMenu("networkMenuWindow");
inline constexpr QLatin1String kPing("pingWindow");
inline constexpr QLatin1String kTcpIp("tcpIpWindow");
inline constexpr QLatin1String kDdns("ddnsWindow");
inline constexpr QLatin1String kEnvironment("enviWindow");
inline constexpr QLatin1String kEnvironmentFace("enviFaceWindow");
inline constexpr QLatin1String kEnvironmentScreen("enviScreenWindow");
inline constexpr QLatin1String kStandbyScreen("enviScreen_StayWindow");
inline constexpr QLatin1String kStandbyPicture("enviscreen_imageselect");
inline constexpr QLatin1String kEnvironmentSound("enviSoundWindow");
inline constexpr QLatin1String kAlarmSound("enviSound_Alarm");
inline constexpr QLatin1String kRecognitionFailSound("enviSound_RecogFail");
inline constexpr QLatin1String kUsbFilePicker("usbUploadFileSelector");
inline constexpr QLatin1String kUserMenu("userMenuWindow");
inline constexpr QLatin1String kAttendance("workMenuWindow");
inline constexpr QLatin1String kMeals("foodMenuWindow");
inline constexpr QLatin1String kEnrolMenu("userEnrollMenuWindow");
inline constexpr QLatin1String kEnrolQualification("userEnroll_qualWindow");
inline constexpr QLatin1String kEnrolCard("userEnroll_cardTagWindow");
inline constexpr QLatin1String kEnrolCardAgain("userEnroll_reCardTagWindow");
inline constexpr QLatin1String kSetupDefault("setupDefaultWindow");
inline constexpr QLatin1String kSetupMenu("setupMenuWindow");
inline constexpr QLatin1String kEnrolId("userEnroll_IDWindow");
inline constexpr QLatin1String kEnrolFace("userEnroll_FaceWindow");
inline constexpr QLatin1String kInfoReader("info_readerWindow");
inline constexpr QLatin1String kInfoConnection("info_conWindow");
inline constexpr QLatin1String kResult("recognizeWindow");
inline constexpr QLatin1String kNumberEntry("inputSubWindow");
inline constexpr QLatin1String kUserSearch("user_searchWindow");
inline constexpr QLatin1String kUserSearchCard("userSearch_cardWindow");
inline constexpr QLatin1String kUserSearchFace("userSearch_faceWindow");
inline constexpr QLatin1String kUserSearchId("userSearch_idWindow");
inline constexpr QLatin1String kUserInfo("userSearch_InfoWindow");
inline constexpr QLatin1String kUserGroup("userGroupInfoWindow");
inline constexpr QLatin1String kLogSearch("info_logSearchWindow");
inline constexpr QLatin1String kUserUpload("userInfo_uploadWindow");
inline constexpr QLatin1String kLogList("info_logListWindow");
inline constexpr QLatin1String kKeyData("info_keyDataWindow");
inline constexpr QLatin1String kUsbLogDates("UsbOutLogWindow");
inline constexpr QLatin1String kFactoryMenu("factoryMenuWindow");
inline constexpr QLatin1String kFactoryPower("f_pwrTestWindow");
inline constexpr QLatin1String kFactoryLcd("f_lcdTestWindow");
inline constexpr QLatin1String kFactoryTouch("f_lcdTouchTestWindow");
inline constexpr QLatin1String kFactoryPixels("f_lcdPixelTestWindow");
inline constexpr QLatin1String kFactorySound("f_soundTestWindow");
inline constexpr QLatin1String kFactoryLed("f_ledTestWindow");
inline constexpr QLatin1String kFactoryIo("f_ioTestWindow");
inline constexpr QLatin1String kFactoryProximity("f_tofTestWindow");
inline constexpr QLatin1String kFactoryLight("f_lightTestWindow");
inline constexpr QLatin1String kFactoryNetwork("f_netTestWindow");
inline constexpr QLatin1String kFactoryCamera("f_camTestWindow");
inline constexpr QLatin1String kFactoryCard("f_cardTestWindow");
inline constexpr QLatin1String kFactoryVersions("f_verTestWindow");
inline constexpr QLatin1String kFactoryClock("f_rtcTestWindow");
inline constexpr QLatin1String kFactoryMac("f_macRegTestWindow");
inline constexpr QLatin1String kFactoryMemory("f_memoryTestWindow");
inline constexpr QLatin1String kUpgrading("upgradingWindow");
inline constexpr QLatin1String kCloud("cloudWindow");
inline constexpr QLatin1String kPassword("InputAdminPassword");
inline constexpr QLatin1String kFactoryColours("colorTestWindow");
inline constexpr QLatin1String kRegistrationMode("setupRegistModeWindow");
inline constexpr QLatin1String kDestination("InputDestinationForm");

}  // namespace screen_title
