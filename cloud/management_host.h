#pragma once

#include <QString>

#include "link/device_records.h"

/// What carrying out a management command takes: the device link, the records and a few screens.
/// The main window implements it; everything happens in the GUI thread.
class ManagementHost {
 public:
    /// Sends a frame without payload while the link is reported up.
    virtual void SendCommand(unsigned short cmd, unsigned char p1, unsigned char p2) = 0;
    /// Sends a frame while the link's socket is connected. @p len may be 0.
    virtual void SendCommand(unsigned short cmd, unsigned char p1, unsigned char p2,
                             unsigned short len, char* data) = 0;
    /// Whether a frame sent now would leave.
    virtual bool linkUp() const = 0;

    virtual void GetGuiMenu(_gui_menu_* menu) = 0;
    virtual void SetGuiMenu(_gui_menu_* menu) = 0;
    virtual void SetGuiUser(_gui_user_* user) = 0;

    /// Shows the screen with the registry title @p title.
    virtual void changeWindow(const QString& title) = 0;
    /// Shows the popup dialog with the script text of @p key until something else replaces it.
    virtual void showPopupText(const QString& key) = 0;
    /// Starts enrolment as the live view's enrol button does.
    virtual void startEnrolment() = 0;
    /// Restarts the timers of the link to the management service.
    virtual void initRestCall() = 0;
    /// Changes the machine's own address.
    virtual void setIp(const AddressBlock& own) = 0;

 protected:
    ~ManagementHost() = default;
};
