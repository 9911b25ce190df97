#pragma once

#include <QMainWindow>
#include <QVariant>
#include <memory>

#include "app/languages.h"
#include "app/record_store.h"
#include "app/system_status.h"
#include "app/window_registry.h"
#include "app/window_shell.h"
#include "cloud/cloud_host.h"
#include "cloud/management_host.h"
#include "link/device_link.h"
#include "link/device_message.h"
#include "link/record_values.h"
#include "ui/script_handler.h"

namespace Ui {
class MainWindow;
}
class DialogForm;
class InputField;
class MenuTimer;
class ManagementLink;
class MessageDispatch;
class ReportPopups;
class RestClass;
class StatusPopup;
class TouchKeyForm;
class TouchWatcher;
class WindowForm;

/// The main controller window: the one window of the process and the front of everything that the
/// screens need. It owns the parts and hands every call on to the one that does the work.
///
/// GUI thread only, but for GetGuiMenu(), settings() and parsingRestCommand().
class MainWindow : public QMainWindow, public CloudHost, public ManagementHost, public WindowShell {
    Q_OBJECT

 public:
    explicit MainWindow(QWidget* parent = nullptr);
    ~MainWindow() override;

    /// The one main window; null before it is made and once it is being destroyed.
    static MainWindow* getMainWindow();
    /// Whether this is the terminal's own display, where the camera's picture lies under the
    /// window and shows wherever nothing is painted.
    static bool onPanel();

    // --- Device link -----------------------------------------------------------------------
    /// Sends a frame without payload; dropped unless the link has been reported up.
    void SendCommand(unsigned short cmd, unsigned char p1, unsigned char p2) override;
    /// Sends a frame; dropped unless the socket is connected. @p data may be null with @p len 0.
    void SendCommand(unsigned short cmd, unsigned char p1, unsigned char p2, unsigned short len,
                     const char* data) override;
    bool linkUp() const override { return link_->connected(); }
    /// Sends a frame whose payload is a packed record.
    template <typename Record>
    void SendRecord(unsigned short cmd, unsigned char p1, unsigned char p2, const Record& record) {
        SendCommand(cmd, p1, p2, sizeof record, reinterpret_cast<const char*>(&record));
    }
    /// Tells the controller that a screen has closed; 1: by the menu time-out.
    void SendCloseMessage(int value);
    /// Plays the sound number @p id, 16 bits.
    void PlaySound(int id);
    /// Speaks @p text (UTF-8, at most 128 bytes are sent); without one only @p n is sent.
    void EnrollPlaySoundTts(int n, const char* text);
    /// Asks for the users and logs that the management service has not seen.
    void checkingForUnsentData();
    /// Kept without effect: frames are never sent again.
    void checkSentMessageList();
    /// Handles a frame as if it had arrived; lets screens be tried without a controller.
    void sendTestPacket(unsigned short cmd, unsigned short len, const char* data);
    /// Dispatches one frame, with the parameters of the header received last.
    void DataParsing(unsigned short command, unsigned short length, const char* payload);

    // --- Records ---------------------------------------------------------------------------
    /// Whole-record copies out of and into the terminal's own. GetGuiMenu may be called from any
    /// thread.
    void GetGuiMenu(_gui_menu_* record) const override { *record = records_.menu(); }
    void SetGuiMenu(const _gui_menu_* record) override { records_.setMenu(*record); }
    void GetGuiUser(_gui_user_* record) const { *record = records_.user(); }
    void SetGuiUser(const _gui_user_* record) override { records_.setUser(*record); }
    void GetUserLog(GUI_USERLOG* record) const { *record = records_.userLog(); }
    void SetUserLog(const GUI_USERLOG* record) { records_.setUserLog(*record); }
    void GetMealCount(MEAL_COUNT* record) const { *record = records_.mealCount(); }
    /// The settings record, for reading single fields.
    _gui_menu_ menuRecord() const { return records_.menu(); }
    /// Whether the controller has sent its settings since the start.
    bool settingsArrived() const { return settingsArrived_; }
    /// Files of the device's data folder: the call number, the location, the pictures.
    QString callNumberPath() const { return callNumberPath_; }
    QString locationPath() const { return locationPath_; }
    QString imageDirectory() const { return imageDirectory_; }
    /// Seconds until the standby screen asks for burn-in protection; 0 never.
    int getSleepMode() const;

    void setReaderMode(ReaderMode mode) { readerMode_ = mode; }
    ReaderMode getReaderMode() const { return readerMode_; }
    void setServiceMode(ServiceMode mode) { serviceMode_ = mode; }
    ServiceMode getServiceMode() const { return serviceMode_; }
    void setAlarmMode(AlarmMode mode) { alarmMode_ = mode; }
    AlarmMode getAlarmMode() const { return alarmMode_; }
    void setWorkMode(WorkMode mode);
    WorkMode getWorkMode() const;
    /// Whether the next recognition compares with one person, whose number was entered (1), or
    /// with all (0).
    void setState1N1(int state) { state1N1_ = state; }
    int getState1N1() const { return state1N1_; }

    // --- Screens ---------------------------------------------------------------------------
    /// 0 done, 1 no such window, -1 refused.
    int changeWindow(const QString& title) override;
    int changeWindow(const QString& title, const QVariant& param);
    WindowForm* getWindow(const QString& title) const { return windows_.find(title); }
    WindowForm* getActivateWindowForm() const { return windows_.active(); }
    /// Switches screen changes off (and on), for an operation that must not be left.
    void setChangeWindowFlag(bool allowed) { windows_.setChangeAllowed(allowed); }
    const QList<WindowForm*>& windowList() const { return windows_.windows(); }

    void StartMenuTimer();
    void StartMenuTimer(int seconds, const QString& returnTitle);
    void ResetMenuTimer();
    void ResetMenuTimer(int seconds);
    void UpdateResetTimer(int selector);
    void StopMenuTimer();

    void showTouchKey();
    void showTouchKey(InputField* field) override;
    void removeTouchKey() override;
    void setTouchKeyOpt(const QString& text);

    void ShowPopup(int key, int seconds);
    void ClosePopup();
    DialogForm* getPopupForm() const;
    /// Shows what the controller says of @p command with @p p1, if that has a text.
    void ShowCommandPopup(int command, int p1, int p2, const char* payload);

    // --- Languages -------------------------------------------------------------------------
    ScriptHandler::Script getScript(const QString& key) const override {
        return languages_->scripts().getScript(key);
    }
    QStringList getLanguageList() const { return languages_->titles(); }
    QString getScriptFontFamily() const { return languages_->scripts().getFontFamily(); }
    int scriptRevision() const override { return languages_->scripts().revision(); }
    /// Switches to the language @p languageNumber at the user's wish; a number that the list does
    /// not have changes nothing. Screens take the new texts when they are next shown.
    void changeLanguage(int languageNumber);

    // --- Status ----------------------------------------------------------------------------
    void setSystemStatus(int status, int p2, int value);
    int getSystemStatus() const;
    void dev_selfChkrResult();

    // --- Management service ----------------------------------------------------------------
    _gui_menu_ settings() const override { return records_.menu(); }
    std::uint32_t selfCheckWord() const override;
    /// Turns a management command into its signal, whose slot runs in the GUI thread. A number
    /// that has none does nothing. Any thread.
    void parsingRestCommand(int command, QVariant parameter) override;
    void updateRestConnectStatus(bool up) override;
    void completedRestCommand(QVariant procIdx) override;
    void initRestCall() override;
    void setIp(const AddressBlock& own) override;
    void startEnrolment() override;
    void showPopupText(const QString& key) override;
    RestClass* restClient() const;
    ManagementLink* managementLink() const { return management_; }
    /// Queues the firmware address of an FR44_Parameter.
    void downloadFileURL(const QVariant& parameter);
    /// Reports an access event or an enrolment to the management service, if it is in use.
    void sendUserInoutData(const GUI_LOGDATA* event);
    void sendUserEnrollData(const info_s* info);
    /// Opens the door once, for a request from inside the terminal.
    void receiveOpenDoor();

 public slots:
    void changeWindowShowEvent(const QString& title);
    void sendCommand_ReceiveNetUserGet(const QVariant& parameter);
    void sendCommand_ReceiveNetUserDelete(const QVariant& parameter);
    void sendCommand_ReceiveNetUserEnroll(const QVariant& parameter);
    void sendCommand_DoorOpen(const QVariant& parameter);
    void sendCommand_RunKioskEnrollMode(const QVariant& parameter);
    void sendCommand_SetTime(const QVariant& parameter);
    void sendCommand_ReceiveNetDeviceSetting(const QVariant& parameter);
    void sendCommand_ReceiveNetSystemSetting(const QVariant& parameter);
    void userRestChkrResult();
    void fwFileDownloadStart(const QString& path);
    void fileDownloadComplete();

 signals:
    void signal_changeWindow(const QString& title);
    void signal_restCall_FR01(const QVariant& parameter);
    void signal_restCall_FR03(const QVariant& parameter);
    void signal_restCall_FR09(const QVariant& parameter);
    void signal_restCall_FR21(const QVariant& parameter);
    void signal_restCall_FR35(const QVariant& parameter);
    void signal_restCall_FR37(const QVariant& parameter);
    void signal_restCall_FR44(const QVariant& parameter);
    void signal_restCall_FR51(const QVariant& parameter);
    void signal_restCall_FR59(const QVariant& parameter);
    void signal_restCall_FR61(const QVariant& parameter);
    void signal_restCall_FR71(const QVariant& parameter);
    void signal_receiveNetUserEnroll(const QVariant& parameter);
    void signal_receiveUserEnrollAuto(const QVariant& parameter);
    void signal_receiveDoorOpen(const QVariant& parameter);
    void signal_restReceive_FR33_2(const QVariant& parameter);
    void signal_restReceive_FR33_3(const QVariant& parameter);
    void signal_restSetTime(const QVariant& parameter);
    void signal_requestFaceImage(const QVariant& parameter);

 protected:
    bool eventFilter(QObject* watched, QEvent* event) override;
    void showEvent(QShowEvent* event) override;
    void closeEvent(QCloseEvent* event) override;

 private:
    void installPictures();
    void initWindowList();
    void createDialogs();
    void connectManagement();
    void settingsReceived(const _gui_menu_& record);
    void checkBootchecker();
    void applyScriptToKeypad();
    void shellMessage(const DeviceMessage& message);
    void quitByController();
    void MenuTimeout(const QString& returnTitle);
    void deleteWarnMaxLog();
    void cancelWarnMaxLog();

    // In the order in which they may be destroyed, last first.
    RecordStore records_;
    const QString callNumberPath_;
    const QString locationPath_;
    const QString imageDirectory_;
    std::unique_ptr<Ui::MainWindow> ui_;

    WindowRegistry windows_;
    Languages* languages_ = nullptr;
    MenuTimer* menuTimer_ = nullptr;
    SystemStatus* status_ = nullptr;
    MessageDispatch* dispatch_ = nullptr;
    DeviceLink* link_ = nullptr;
    StatusPopup* statusPopup_ = nullptr;
    ReportPopups* popups_ = nullptr;
    TouchWatcher* touchWatcher_ = nullptr;
    TouchKeyForm* touchKey_ = nullptr;
    ManagementLink* management_ = nullptr;

    DeviceMessage lastControllerEvent_;
    ReaderMode readerMode_ = ReaderMode::In;
    ServiceMode serviceMode_ = ServiceMode::InService;
    AlarmMode alarmMode_ = AlarmMode::None;
    int state1N1_ = 0;
    bool settingsArrived_ = false;
    bool shownOnce_ = false;
    bool factoryActive_ = false;
};
