#pragma once

#include <QString>
#include <QStringList>
#include <QVariant>
#include <functional>

#include "link/device_records.h"
#include "link/record_values.h"
#include "ui/script_handler.h"

class DialogForm;
class DownloadManager;
class InputField;
class PeerHistory;
class ServiceContact;
struct PasswordPurpose;
class WindowForm;

/// All that a screen needs of the shell around it. The main window implements it; a screen reaches
/// it through WindowForm::shell(). GUI thread only.
class WindowShell {
 public:
    /// Whether this is the terminal's own display, where the camera's picture lies under the
    /// window and shows wherever nothing is painted.
    static bool onPanel();

    // --- The device controller -------------------------------------------------------------
    /// Sends a frame without payload. False, with nothing sent, unless the link has been reported
    /// up; nothing is queued.
    virtual bool SendCommand(unsigned short cmd, unsigned char p1, unsigned char p2) = 0;
    /// Sends a frame. False, with nothing sent, unless the socket is connected. @p data may be
    /// null with @p len 0.
    virtual bool SendCommand(unsigned short cmd, unsigned char p1, unsigned char p2,
                             unsigned short len, const char* data) = 0;
    /// Sends a frame whose payload is a packed record; as the one with a payload.
    template <typename Record>
    bool SendRecord(unsigned short cmd, unsigned char p1, unsigned char p2, const Record& record) {
        return SendCommand(cmd, p1, p2, sizeof record, reinterpret_cast<const char*>(&record));
    }
    /// Tells the controller that a screen has closed; 1: by the menu time-out.
    virtual void SendCloseMessage(int value) = 0;
    /// Plays the sound number @p id, 16 bits.
    virtual void PlaySound(int id) = 0;
    /// Speaks @p text (UTF-8, at most 128 bytes are sent); without one only @p n is sent.
    virtual void EnrollPlaySoundTts(int n, const char* text) = 0;

    // --- The peers -------------------------------------------------------------------------
    /// Whether the link to the device controller has been reported up.
    virtual bool linkUp() const = 0;
    /// Has @p call called each time that it is reported up or down, as long as @p listener lives.
    virtual void onLinkChange(QObject* listener, const std::function<void(bool up)>& call) = 0;
    /// Whether the controller has been told to look for people, and not to stop since.
    virtual bool recognitionRuns() const = 0;
    /// Whether the settings have the management service in use, and whether it has been reached;
    /// one that is not in use never is. Changes come as WindowForm::peersChanged().
    virtual bool serviceInUse() const = 0;
    virtual bool serviceReached() const = 0;
    /// Tells the service, when it is in use, that the users of @p group are gone: one of
    /// command::user_group.
    virtual void reportGroupDeleted(int group) = 0;
    /// What has passed between the terminal and both.
    virtual const PeerHistory& peerHistory() const = 0;
    /// More about that, for a screen that follows it.
    virtual const ServiceContact& serviceContact() const = 0;
    /// Tries to reach it now.
    virtual void connectService() = 0;
    /// Gives the machine the address of @p own, unless that is the record's already.
    virtual void setIp(const AddressBlock& own) = 0;
    /// The firmware downloads that the service has ordered.
    virtual DownloadManager& downloads() = 0;

    // --- Records ---------------------------------------------------------------------------
    /// Whole-record copies out of and into the terminal's own.
    virtual void GetGuiMenu(_gui_menu_* record) const = 0;
    virtual void SetGuiMenu(const _gui_menu_* record) = 0;
    virtual void GetGuiUser(_gui_user_* record) const = 0;
    virtual void SetGuiUser(const _gui_user_* record) = 0;
    virtual void GetUserLog(GUI_USERLOG* record) const = 0;
    virtual void SetUserLog(const GUI_USERLOG* record) = 0;
    virtual void GetMealCount(MEAL_COUNT* record) const = 0;
    /// The settings record, for reading single fields.
    virtual _gui_menu_ menuRecord() const = 0;
    /// Whether the controller has sent its settings since the start.
    virtual bool settingsArrived() const = 0;
    /// Seconds until the standby screen asks for burn-in protection; 0 never.
    virtual int getSleepMode() const = 0;
    /// Files of the device's data folder: the call number, the location, the pictures.
    virtual QString callNumberPath() const = 0;
    virtual QString locationPath() const = 0;
    virtual QString imageDirectory() const = 0;

    // --- Modes -----------------------------------------------------------------------------
    virtual void setReaderMode(ReaderMode mode) = 0;
    virtual ReaderMode getReaderMode() const = 0;
    virtual void setServiceMode(ServiceMode mode) = 0;
    virtual ServiceMode getServiceMode() const = 0;
    virtual void setAlarmMode(AlarmMode mode) = 0;
    virtual AlarmMode getAlarmMode() const = 0;
    virtual void setWorkMode(WorkMode mode) = 0;
    virtual WorkMode getWorkMode() const = 0;
    /// The operating status that the controller has reported last.
    virtual int getSystemStatus() const = 0;
    /// Whether the next recognition compares with one person, whose number was entered (1), or
    /// with all (0).
    virtual void setState1N1(int state) = 0;
    virtual int getState1N1() const = 0;

    // --- Screens ---------------------------------------------------------------------------
    /// Shows the screen titled @p title, and gives it @p param first. 0 done, 1 no such window,
    /// -1 refused: changes are switched off, the screen is the active one, or it is the
    /// administrator's and the password is asked for first. Who asked does nothing further unless
    /// it is 0.
    virtual int changeWindow(const QString& title) = 0;
    virtual int changeWindow(const QString& title, const QVariant& param) = 0;
    /// The first screen titled @p title, or null.
    virtual WindowForm* getWindow(const QString& title) const = 0;
    virtual WindowForm* getActivateWindowForm() const = 0;
    /// Has @p call called with the title of the screen that is about to come up, as long as
    /// @p listener lives.
    virtual void onScreenChange(QObject* listener,
                                const std::function<void(const QString& title)>& call) = 0;
    /// Switches screen changes off (and on), for an operation that must not be left.
    virtual void setChangeWindowFlag(bool allowed) = 0;
    /// Whether they are on.
    virtual bool canChangeWindow() const = 0;

    // --- Whom the screens are for ------------------------------------------------------------
    /// Carries @p request out for the administrator: at once while a session is open or no
    /// password is set; otherwise asks for the password first, and the standby screen follows.
    virtual void asAdministrator(const std::function<void()>& request) = 0;
    /// The password for @p purpose has been entered: opens the session and goes on.
    virtual void passwordEntered(const PasswordPurpose& purpose) = 0;
    /// Whether the session is open, or no password is needed to open it.
    virtual bool isAdministrator() = 0;
    /// Shows the first step of an enrolment that no administrator has begun, with @p enrolMode as
    /// its parameter; as changeWindow().
    virtual int enrolAtDoor(int enrolMode) = 0;
    /// The screen that an enrolment returns to: where it began.
    virtual QString enrolmentReturnTitle() const = 0;

    // --- The time after which an unattended menu is left ------------------------------------
    virtual void StartMenuTimer() = 0;
    virtual void StartMenuTimer(int seconds, const QString& returnTitle) = 0;
    virtual void ResetMenuTimer() = 0;
    virtual void ResetMenuTimer(int seconds) = 0;
    virtual void UpdateResetTimer(int selector) = 0;
    virtual void StopMenuTimer() = 0;

    // --- Texts -----------------------------------------------------------------------------
    virtual ScriptHandler::Script getScript(const QString& key) const = 0;
    /// Grows with every change of language.
    virtual int scriptRevision() const = 0;
    virtual QStringList getLanguageList() const = 0;
    virtual QString getScriptFontFamily() const = 0;
    /// Switches to the language @p languageNumber at the user's wish; a number that the list does
    /// not have changes nothing. Screens take the new texts when they are next shown.
    virtual void changeLanguage(int languageNumber) = 0;

    // --- Keypad ----------------------------------------------------------------------------
    virtual void showTouchKey() = 0;
    /// Opens the keypad for @p field.
    virtual void showTouchKey(InputField* field) = 0;
    virtual void removeTouchKey() = 0;
    /// Sets the text of the keypad's option key.
    virtual void setTouchKeyOpt(const QString& text) = 0;

    // --- Popups ----------------------------------------------------------------------------
    virtual void ShowPopup(int key, int seconds) = 0;
    virtual void ClosePopup() = 0;
    /// The popup dialog that screens share.
    virtual DialogForm* getPopupForm() const = 0;
    /// Shows what the controller says of @p command with @p p1, if that has a text.
    virtual void ShowCommandPopup(int command, int p1, int p2, const char* payload) = 0;
    /// Shows the text of @p key for some seconds, whatever screen comes up meanwhile.
    virtual void showPopupText(const QString& key) = 0;

 protected:
    ~WindowShell() = default;
};
