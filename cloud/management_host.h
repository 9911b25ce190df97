#pragma once

#include <QString>

#include "link/device_records.h"
#include "link/link_progress.h"

/// What carrying out a management command takes: the device link, the records and a few screens.
/// The main window implements it with operations that it has anyway. GUI thread only.
class ManagementHost {
 public:
    /// Sends a frame without payload. False, with nothing sent, unless the link has been reported
    /// up.
    virtual bool SendCommand(unsigned short cmd, unsigned char p1, unsigned char p2) = 0;
    /// Sends a frame. False, with nothing sent, unless the socket is connected. @p data may be
    /// null with @p len 0.
    virtual bool SendCommand(unsigned short cmd, unsigned char p1, unsigned char p2,
                             unsigned short len, const char* data) = 0;
    /// How far the frames sent have come.
    virtual LinkProgress linkProgress() const = 0;

    virtual void GetGuiMenu(_gui_menu_* record) const = 0;
    virtual void SetGuiMenu(const _gui_menu_* record) = 0;
    virtual void SetGuiUser(const _gui_user_* record) = 0;

    /// Shows the standby screen, and the live view.
    virtual void showStandby() = 0;
    virtual void showLive() = 0;
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
