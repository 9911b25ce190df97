#include "app/screen_factory.h"
#include "app/window_registry.h"
#include "screens/facesearch/input_destination.h"
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
#include "screens/settings/food_window.h"
#include "screens/recognize/input_admin_password.h"
#include "screens/recognize/live_view.h"
#include "screens/recognize/recognize_window.h"
#include "screens/recognize/stay_window.h"
#include "screens/settings/work_window.h"
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
#include "screens/settings/network_menu_form.h"
#include "screens/settings/ping_test_window.h"
#include "screens/settings/setup_default.h"
#include "screens/settings/setup_menu.h"
#include "screens/settings/tcp_window.h"
#include "screens/settings/upgrading_window.h"
#include "screens/settings/zel_menu_form.h"
#include "screens/usb/usb_menu.h"
#include "screens/usb/usb_out_log_date.h"
#include "screens/usb/usb_upload_file_selecter.h"
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
    const char* title;
    WindowForm* (*create)(QWidget* parent, const QString& title);
};

// The order is the registry's; titles are as irregular as the screens' history.
constexpr Entry kScreens[] = {
    {"bootWindow", &create<BootingForm>},
    {"stayWindow", &create<StayWindow>},
    {"liveWindow", &create<LiveView>},
    {"zelMenuWindow", &create<ZelMenuForm>},
    {"usbMenuWindow", &create<UsbMenu>},
    {"networkMenuWindow", &create<NetworkMenuForm>},
    {"pingWindow", &create<PingTestWindow>},
    {"tcpIpWindow", &create<TCP_Window>},
    {"ddnsWindow", &create<ddns_window>},
    {"enviWindow", &create<environment>},
    {"enviFaceWindow", &create<EnviFaceRecog>},
    {"enviScreenWindow", &create<enviScreen>},
    {"enviScreen_StayWindow", &create<EnviScreen_StayView>},
    {"enviscreen_imageselect", &create<EnviScreen_ImageSelect>},
    {"enviSoundWindow", &create<enviSound>},
    {"enviSound_Alarm", &create<EnviSound_Alarm>},
    {"enviSound_RecogFail", &create<EnviSound_RecogFail>},
    {"usbUploadFileSelector", &create<UsbUploadFileSelecter>},
    {"userMenuWindow", &create<UserMenuForm>},
    {"workMenuWindow", &create<workWindow>},
    {"foodMenuWindow", &create<FoodWindow>},
    {"userEnrollMenuWindow", &create<UserEnroll>},
    {"userEnroll_qualWindow", &create<UserEnroll_Qualification>},
    {"userEnroll_cardTagWindow", &create<UserEnroll_CardTag>},
    {"userEnroll_reCardTagWindow", &create<UserEnroll_ReCardTag>},
    {"setupDefaultWindow", &create<SetupDefault>},
    {"setupMenuWindow", &create<SetupMenu>},
    {"userEnroll_IDWindow", &create<UserEnroll_ID>},
    {"userEnroll_FaceWindow", &create<UserEnroll_Face>},
    {"info_readerWindow", &create<Info_ReaderWindow>},
    {"info_conWindow", &create<info_conWindow>},
    {"recognizeWindow", &create<RecognizeWindow>},
    {"inputSubWindow", &create<InputSub>},
    {"user_searchWindow", &create<UserSearch>},
    {"userSearch_cardWindow", &create<UserSearch_Card>},
    {"userSearch_faceWindow", &create<UserSearch_Face>},
    {"userSearch_idWindow", &create<UserSearch_ID>},
    {"userSearch_InfoWindow", &create<UserSearch_userInfo>},
    {"userGroupInfoWindow", &create<UserGroupInfo>},
    {"info_logSearchWindow", &create<Info_LogSearch>},
    {"userInfo_uploadWindow", &create<UserInfoUpload>},
    {"info_logListWindow", &create<Info_logList>},
    {"info_keyDataWindow", &create<Info_KeyDataWindow>},
    {"UsbOutLogWindow", &create<UsbOutLogDate>},
    {"factoryMenuWindow", &create<FactoryMenu>},
    {"f_pwrTestWindow", &create<f_pwrTest>},
    {"f_lcdTestWindow", &create<f_lcdTest>},
    {"f_lcdTouchTestWindow", &create<f_lcd_touchTest>},
    {"f_lcdPixelTestWindow", &create<f_lcd_pixelTest>},
    {"f_soundTestWindow", &create<f_soundTest>},
    {"f_ledTestWindow", &create<f_ledTest>},
    {"f_ioTestWindow", &create<f_ioTest>},
    {"f_tofTestWindow", &create<f_tofTest>},
    {"f_lightTestWindow", &create<f_lightTest>},
    {"f_netTestWindow", &create<f_netTest>},
    {"f_camTestWindow", &create<f_camTest>},
    {"f_cardTestWindow", &create<f_cardTest>},
    {"f_verTestWindow", &create<f_verTest>},
    {"f_rtcTestWindow", &create<f_rtcTest>},
    {"f_macRegTestWindow", &create<f_macRegTest>},
    {"f_memoryTestWindow", &create<f_memoryTest>},
    {"upgradingWindow", &create<upgradingWindow>},
    {"cloudWindow", &create<Cloud_Window>},
    {"InputAdminPassword", &create<InputAdminPassword>},
    {"colorTestWindow", &create<ColorTestForm>},
    {"setupRegistModeWindow", &create<SetupRegistModeForm>},
    {"InputDestinationForm", &create<InputDestination>},
};

}  // namespace

void createScreens(QWidget* parent, WindowRegistry& registry) {
    for (const Entry& entry : kScreens)
        registry.append(entry.create(parent, QLatin1String(entry.title)));

    // The live view decides how a result comes up and what leads to the menu; the result itself
    // knows nothing of the live view.
    const auto* result =
        qobject_cast<RecognizeWindow*>(registry.find(QStringLiteral("recognizeWindow")));
    const auto* live = qobject_cast<LiveView*>(registry.find(QStringLiteral("liveWindow")));
    QObject::connect(result, &RecognizeWindow::resultReady, live, &LiveView::verified);
    QObject::connect(result, &RecognizeWindow::menuRequested, live, &LiveView::homeButtonTouch);
}
