#pragma once

#include <QMainWindow>
#include <QVariant>
#include <memory>

#include "app/controller_orders.h"
#include "app/languages.h"
#include "app/navigation.h"
#include "app/recognition_run.h"
#include "app/record_store.h"
#include "app/screen_titles.h"
#include "app/settings_entrance.h"
#include "app/system_status.h"
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
class ManagementLink;
class MessageDispatch;
class ReportPopups;
class RestClass;
class ShellMessages;
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

    // --- Device link -----------------------------------------------------------------------
    bool SendCommand(unsigned short cmd, unsigned char p1, unsigned char p2) override {
        return link_->send(cmd, p1, p2);
    }
    bool SendCommand(unsigned short cmd, unsigned char p1, unsigned char p2, unsigned short len,
                     const char* payload) override {
        return link_->send(cmd, p1, p2, len, payload);
    }
    bool linkUp() const override { return link_->connected(); }
    LinkProgress linkProgress() const override { return link_->progress(); }
    bool recognitionRuns() const override { return recognition_.runs(); }
    void SendCloseMessage(int value) override { orders_->tellClosed(value); }
    void PlaySound(int id) override { orders_->playSound(id); }
    void EnrollPlaySoundTts(int n, const char* text) override { orders_->speak(n, text); }
    /// Asks for the users and logs that the management service has not seen.
    void checkingForUnsentData() { orders_->askForUnsentData(); }
    /// Kept without effect: frames are never sent again.
    void checkSentMessageList() {}
    /// Handles a frame as if it had arrived; lets screens be tried without a controller.
    void sendTestPacket(unsigned short cmd, unsigned short len, const char* payload) {
        DataParsing(cmd, len, payload);
    }
    /// Dispatches one frame, with the parameters of the header received last.
    void DataParsing(unsigned short command, unsigned short length, const char* payload);

    // --- Records ---------------------------------------------------------------------------
    /// GetGuiMenu may be called from any thread.
    void GetGuiMenu(_gui_menu_* record) const override { *record = records_.menu(); }
    void SetGuiMenu(const _gui_menu_* record) override { settings_->store(*record); }
    void GetGuiUser(_gui_user_* record) const override { *record = records_.user(); }
    void SetGuiUser(const _gui_user_* record) override { records_.setUser(*record); }
    void GetUserLog(GUI_USERLOG* record) const override { *record = records_.userLog(); }
    void SetUserLog(const GUI_USERLOG* record) override { records_.setUserLog(*record); }
    void GetMealCount(MEAL_COUNT* record) const override { *record = records_.mealCount(); }
    _gui_menu_ menuRecord() const override { return records_.menu(); }
    bool settingsArrived() const override { return settings_->arrived(); }
    bool settingsCurrent() const override { return settings_->arrived() && link_->connected(); }
    QString callNumberPath() const override { return callNumberPath_; }
    QString locationPath() const override { return locationPath_; }
    QString imageDirectory() const override { return imageDirectory_; }
    int getSleepMode() const override;

    void setReaderMode(ReaderMode mode) override { readerMode_ = mode; }
    ReaderMode getReaderMode() const override { return readerMode_; }
    void setServiceMode(ServiceMode mode) override { serviceMode_ = mode; }
    ServiceMode getServiceMode() const override { return serviceMode_; }
    void setAlarmMode(AlarmMode mode) override { alarmMode_ = mode; }
    AlarmMode getAlarmMode() const override { return alarmMode_; }
    void setWorkMode(WorkMode mode) override { status_->setWorkMode(mode); }
    WorkMode getWorkMode() const override { return status_->workMode(); }
    void setState1N1(int state) override { state1N1_ = state; }
    int getState1N1() const override { return state1N1_; }

    // --- Screens ---------------------------------------------------------------------------
    int changeWindow(const QString& title) override { return navigation_->change(title); }
    int changeWindow(const QString& title, const QVariant& param) override {
        return navigation_->change(title, &param);
    }
    WindowForm* getWindow(const QString& title) const override {
        return navigation_->windows().find(title);
    }
    WindowForm* getActivateWindowForm() const override { return navigation_->windows().active(); }
    void onScreenChange(QObject* listener,
                        const std::function<void(const QString&)>& call) override {
        connect(this, &MainWindow::signal_changeWindow, listener, call);
    }
    void onLinkChange(QObject* listener, const std::function<void(bool)>& call) override {
        connect(this, &MainWindow::signal_linkChanged, listener, call);
    }
    void setChangeWindowFlag(bool allowed) override {
        navigation_->windows().setChangeAllowed(allowed);
    }
    void showStandby() override { changeWindow(screen_title::kStandby); }
    void showLive() override { changeWindow(screen_title::kLive); }
    bool canChangeWindow() const override { return navigation_->windows().isChangeAllowed(); }
    const QList<WindowForm*>& windowList() const { return navigation_->windows().windows(); }

    void asAdministrator(const std::function<void()>& request) override {
        navigation_->asAdministrator(request);
    }
    void passwordEntered(const PasswordPurpose& purpose) override {
        navigation_->passwordEntered(purpose);
    }
    bool isAdministrator() override { return navigation_->session().isOpen(); }
    int enrolAtDoor(int enrolMode) override { return navigation_->enrolAtDoor(enrolMode); }
    QString enrolmentReturnTitle() const override { return navigation_->enrolmentReturnTitle(); }
    AdministratorSession& session() { return navigation_->session(); }

    void StartMenuTimer() override { navigation_->menuTimer().start(); }
    void StartMenuTimer(int seconds, const QString& returnTitle) override {
        navigation_->menuTimer().start(seconds, returnTitle);
    }
    void ResetMenuTimer() override { navigation_->menuTimer().reset(); }
    void ResetMenuTimer(int seconds) override { navigation_->menuTimer().reset(seconds); }
    void UpdateResetTimer(int selector) override { navigation_->menuTimer().updateReset(selector); }
    void StopMenuTimer() override { navigation_->menuTimer().stop(); }

    void showTouchKey() override;
    void showTouchKey(InputField* field) override;
    void removeTouchKey() override;
    void setTouchKeyOpt(const QString& text) override;

    void ShowPopup(int key, int seconds) override;
    void ClosePopup() override;
    DialogForm* getPopupForm() const override;
    void ShowCommandPopup(int command, int p1, int p2, const char* payload) override;

    // --- Languages -------------------------------------------------------------------------
    ScriptHandler::Script getScript(const QString& key) const override {
        return languages_->scripts().getScript(key);
    }
    QStringList getLanguageList() const override { return languages_->titles(); }
    QString getScriptFontFamily() const override { return languages_->scripts().getFontFamily(); }
    int scriptRevision() const override { return languages_->scripts().revision(); }
    void changeLanguage(int languageNumber) override { languages_->change(languageNumber); }

    // --- Status ----------------------------------------------------------------------------
    void setSystemStatus(int status, int p2, int value);
    int getSystemStatus() const override { return status_->status(); }
    void dev_selfChkrResult() { status_->evaluateSelfCheck(); }

    // --- Management service ----------------------------------------------------------------
    bool serviceInUse() const override;
    bool serviceReached() const override;
    const PeerHistory& peerHistory() const override { return *history_; }
    const ServiceContact& serviceContact() const override;
    void connectService() override;
    DownloadManager& downloads() override;
    _gui_menu_ settings() const override { return records_.menu(); }
    std::uint32_t selfCheckWord() const override { return status_->selfCheck(); }
    /// Turns a management command into its signal, whose slot runs in the GUI thread. A number
    /// that has none does nothing. Any thread.
    void parsingRestCommand(int command, QVariant parameter) override;
    void updateRestConnectStatus(bool up) override;
    void completedRestCommand(QVariant procIdx) override;
    void initRestCall() override;
    void setIp(const AddressBlock& own) override;
    void startEnrolment() override;
    void showPopupText(const QString& key) override;
    void reportGroupDeleted(int group) override;
    RestClass* restClient() const;
    ManagementLink* managementLink() const { return management_; }
    /// Queues the firmware address of an FR44_Parameter.
    void downloadFileURL(const QVariant& parameter);
    /// Reports an access event or an enrolment to the management service, if it is in use.
    void sendUserInoutData(const GUI_LOGDATA* event);
    void sendUserEnrollData(const info_s* info);
    /// Opens the door once, for a request from inside the terminal.
    void receiveOpenDoor() { emit signal_receiveDoorOpen(0); }

 public slots:
    void changeWindowShowEvent(const QString& title) { navigation_->startTime(title); }
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
    /// The link to the device controller has been reported up, or down.
    void signal_linkChanged(bool up);
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
    void connectMessages();
    void createDialogs();
    void connectManagement();
    void peersChanged();
    void settingsChanged(const SettingsChange& change);
    void checkBootchecker();
    void restAtStandby();
    void applyScriptToKeypad();
    void quitByController();
    /// Shows a screen, or tells it the parameter if it is up already.
    void showScreen(const QString& title, const QVariant& param);
    void deleteWarnMaxLog();
    void cancelWarnMaxLog();

    // In the order in which they may be destroyed, last first.
    RecordStore records_;
    const QString callNumberPath_;
    const QString locationPath_;
    const QString imageDirectory_;
    std::unique_ptr<Ui::MainWindow> ui_;

    std::unique_ptr<ControllerOrders> orders_;

    Languages* languages_ = nullptr;
    Navigation* navigation_ = nullptr;
    SettingsEntrance* settings_ = nullptr;
    SystemStatus* status_ = nullptr;
    MessageDispatch* dispatch_ = nullptr;
    ShellMessages* messages_ = nullptr;
    PeerHistory* history_ = nullptr;
    DeviceLink* link_ = nullptr;
    StatusPopup* statusPopup_ = nullptr;
    ReportPopups* popups_ = nullptr;
    TouchWatcher* touchWatcher_ = nullptr;
    TouchKeyForm* touchKey_ = nullptr;
    ManagementLink* management_ = nullptr;

    RecognitionRun recognition_;
    ReaderMode readerMode_ = ReaderMode::In;
    ServiceMode serviceMode_ = ServiceMode::InService;
    AlarmMode alarmMode_ = AlarmMode::None;
    int state1N1_ = 0;
    bool shownOnce_ = false;
    bool peersReached_ = false;  // both the controller and the service
};
