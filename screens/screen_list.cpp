#include "app/screen_factory.h"
#include "app/screen_titles.h"
#include "app/window_registry.h"
#include "screens/facesearch/dialog_fsv_recognized.h"
#include "screens/facesearch/face_search_server.h"
#include "screens/facesearch/fsv_client.h"
#include "screens/facesearch/input_sub.h"
#include "screens/factory/color_test_form.h"
#include "screens/factory/f_cam_test.h"
#include "screens/factory/f_card_test.h"
#include "screens/factory/f_io_test.h"
#include "screens/factory/f_lcd_pixel_test.h"
#include "screens/factory/f_lcd_test.h"
#include "screens/factory/f_lcd_touch_test.h"
#include "screens/factory/f_led_test.h"
#include "screens/factory/f_light_test.h"
#include "screens/factory/f_mac_reg_test.h"
#include "screens/factory/f_memory_test.h"
#include "screens/factory/f_net_test.h"
#include "screens/factory/f_pwr_test.h"
#include "screens/factory/f_rtc_test.h"
#include "screens/factory/f_sound_test.h"
#include "screens/factory/f_tof_test.h"
#include "screens/factory/f_ver_test.h"
#include "screens/factory/factory_menu.h"
#include "screens/information/info_con_window.h"
#include "screens/information/info_key_data_window.h"
#include "screens/information/info_reader_window.h"
#include "screens/logs/info_log_list.h"
#include "screens/logs/info_log_search.h"
#include "screens/recognize/booting_form.h"
#include "screens/recognize/input_admin_password.h"
#include "screens/recognize/live_view.h"
#include "screens/recognize/recognize_window.h"
#include "screens/recognize/stay_window.h"
#include "screens/settings/cloud_window.h"
#include "screens/settings/ddns_window.h"
#include "screens/settings/envi_face_recog.h"
#include "screens/settings/envi_screen.h"
#include "screens/settings/envi_screen_image_select.h"
#include "screens/settings/envi_screen_stay_view.h"
#include "screens/settings/envi_sound.h"
#include "screens/settings/envi_sound_alarm.h"
#include "screens/settings/envi_sound_recog_fail.h"
#include "screens/settings/environment.h"
#include "screens/settings/food_window.h"
#include "screens/settings/network_menu_form.h"
#include "screens/settings/ping_test_window.h"
#include "screens/settings/setup_default.h"
#include "screens/settings/setup_menu.h"
#include "screens/settings/tcp_window.h"
#include "screens/settings/upgrading_window.h"
#include "screens/settings/work_window.h"
#include "screens/settings/zel_menu_form.h"
#include "screens/usb/usb_menu.h"
#include "screens/usb/usb_out_log_date.h"
#include "screens/usb/usb_upload_file_selecter.h"
#include "screens/users/input_destination.h"
#include "screens/users/setup_regist_mode_form.h"
#include "screens/users/user_enroll.h"
#include "screens/users/user_enroll_card_tag.h"
#include "screens/users/user_enroll_face.h"
#include "screens/users/user_enroll_id.h"
#include "screens/users/user_enroll_qualification.h"
#include "screens/users/user_enroll_re_card_tag.h"
#include "screens/users/user_group_info.h"
#include "screens/users/user_info_upload.h"
#include "screens/users/user_menu_form.h"
#include "screens/users/user_search.h"
#include "screens/users/user_search_card.h"
#include "screens/users/user_search_face.h"
#include "screens/users/user_search_id.h"
#include "screens/users/user_search_user_info.h"

namespace {

template <typename Screen>
WindowForm* create(QWidget* parent, const QString& title) {
    return new Screen(parent, title);
}

struct Entry {
    QLatin1String title;
    WindowForm* (*create)(QWidget* parent, const QString& title);
};

// The order is the registry's.
constexpr Entry kScreens[] = {
    {screen_title::kBoot, &create<BootingForm>},
    {screen_title::kStandby, &create<StayWindow>},
    {screen_title::kLive, &create<LiveView>},
    {screen_title::kMenu, &create<ZelMenuForm>},
    {screen_title::kUsbMenu, &create<UsbMenu>},
    {screen_title::kNetworkMenu, &create<NetworkMenuForm>},
    {screen_title::kPing, &create<PingTestWindow>},
    {screen_title::kTcpIp, &create<TCP_Window>},
    {screen_title::kDdns, &create<ddns_window>},
    {screen_title::kEnvironment, &create<environment>},
    {screen_title::kEnvironmentFace, &create<EnviFaceRecog>},
    {screen_title::kEnvironmentScreen, &create<enviScreen>},
    {screen_title::kStandbyScreen, &create<EnviScreen_StayView>},
    {screen_title::kStandbyPicture, &create<EnviScreen_ImageSelect>},
    {screen_title::kEnvironmentSound, &create<enviSound>},
    {screen_title::kAlarmSound, &create<EnviSound_Alarm>},
    {screen_title::kRecognitionFailSound, &create<EnviSound_RecogFail>},
    {screen_title::kUsbFilePicker, &create<UsbUploadFileSelecter>},
    {screen_title::kUserMenu, &create<UserMenuForm>},
    {screen_title::kAttendance, &create<workWindow>},
    {screen_title::kMeals, &create<FoodWindow>},
    {screen_title::kEnrolMenu, &create<UserEnroll>},
    {screen_title::kEnrolQualification, &create<UserEnroll_Qualification>},
    {screen_title::kEnrolCard, &create<UserEnroll_CardTag>},
    {screen_title::kEnrolCardAgain, &create<UserEnroll_ReCardTag>},
    {screen_title::kSetupDefault, &create<SetupDefault>},
    {screen_title::kSetupMenu, &create<SetupMenu>},
    {screen_title::kEnrolId, &create<UserEnroll_ID>},
    {screen_title::kEnrolFace, &create<UserEnroll_Face>},
    {screen_title::kInfoReader, &create<Info_ReaderWindow>},
    {screen_title::kInfoConnection, &create<info_conWindow>},
    {screen_title::kResult, &create<RecognizeWindow>},
    {screen_title::kNumberEntry, &create<InputSub>},
    {screen_title::kUserSearch, &create<UserSearch>},
    {screen_title::kUserSearchCard, &create<UserSearch_Card>},
    {screen_title::kUserSearchFace, &create<UserSearch_Face>},
    {screen_title::kUserSearchId, &create<UserSearch_ID>},
    {screen_title::kUserInfo, &create<UserSearch_userInfo>},
    {screen_title::kUserGroup, &create<UserGroupInfo>},
    {screen_title::kLogSearch, &create<Info_LogSearch>},
    {screen_title::kUserUpload, &create<UserInfoUpload>},
    {screen_title::kLogList, &create<Info_logList>},
    {screen_title::kKeyData, &create<Info_KeyDataWindow>},
    {screen_title::kUsbLogDates, &create<UsbOutLogDate>},
    {screen_title::kFactoryMenu, &create<FactoryMenu>},
    {screen_title::kFactoryPower, &create<f_pwrTest>},
    {screen_title::kFactoryLcd, &create<f_lcdTest>},
    {screen_title::kFactoryTouch, &create<f_lcd_touchTest>},
    {screen_title::kFactoryPixels, &create<f_lcd_pixelTest>},
    {screen_title::kFactorySound, &create<f_soundTest>},
    {screen_title::kFactoryLed, &create<f_ledTest>},
    {screen_title::kFactoryIo, &create<f_ioTest>},
    {screen_title::kFactoryProximity, &create<f_tofTest>},
    {screen_title::kFactoryLight, &create<f_lightTest>},
    {screen_title::kFactoryNetwork, &create<f_netTest>},
    {screen_title::kFactoryCamera, &create<f_camTest>},
    {screen_title::kFactoryCard, &create<f_cardTest>},
    {screen_title::kFactoryVersions, &create<f_verTest>},
    {screen_title::kFactoryClock, &create<f_rtcTest>},
    {screen_title::kFactoryMac, &create<f_macRegTest>},
    {screen_title::kFactoryMemory, &create<f_memoryTest>},
    {screen_title::kUpgrading, &create<upgradingWindow>},
    {screen_title::kCloud, &create<Cloud_Window>},
    {screen_title::kPassword, &create<InputAdminPassword>},
    {screen_title::kFactoryColours, &create<ColorTestForm>},
    {screen_title::kRegistrationMode, &create<SetupRegistModeForm>},
    {screen_title::kDestination, &create<InputDestination>},
};

/// Has the live view show whom a face-search server takes people for, if there is one.
void searchFaces(LiveView* live) {
    const auto server = FaceSearchServer::configured();
    if (!server)
        return;
    auto* dialog = new DialogFsvRecognized(live);
    live->watch(dialog);
    auto* client = new FsvClient(*server, live);
    QObject::connect(client, &FsvClient::recognised, dialog, &DialogFsvRecognized::tell);
    client->start();
}

}  // namespace

void createScreens(QWidget* parent, WindowRegistry& registry) {
    for (const Entry& entry : kScreens)
        registry.append(entry.create(parent, entry.title));

    // The live view decides how a result comes up and what leads to the menu; the result itself
    // knows nothing of the live view.
    const auto* result = qobject_cast<RecognizeWindow*>(registry.find(screen_title::kResult));
    auto* live = qobject_cast<LiveView*>(registry.find(screen_title::kLive));
    QObject::connect(result, &RecognizeWindow::resultReady, live, &LiveView::verified);
    QObject::connect(result, &RecognizeWindow::menuRequested, live, &LiveView::homeButtonTouch);
    searchFaces(live);
}
