#pragma once

#include <QString>
#include <QVariant>
#include <functional>
#include <optional>

#include "link/device_records.h"

/// What the administrator's password is asked for: a screen to go to, or a request to be carried
/// out. The password screen takes it as its parameter; without one it leads to the menu.
struct PasswordPurpose {
    QString title;                       ///< registry title
    QVariant param;                      ///< for that screen, invalid for none
    std::function<void()> request = {};  ///< instead of a screen; the standby screen follows
};
Q_DECLARE_METATYPE(PasswordPurpose)

/// Which screens may come up. The public ones always may; those of an enrolment may while somebody
/// enrols at the door; every other one belongs to the administrator and needs an open session,
/// which the password opens and the next standby, live or result screen ends. GUI thread only.
class AdministratorSession {
 public:
    /// @p settings gives the settings in force, nothing while they are not known.
    explicit AdministratorSession(std::function<std::optional<_gui_menu_>()> settings);

    /// Whether anybody may see the screen @p title.
    static bool isPublic(const QString& title);
    /// Whether it is one of those that the person who is being enrolled sees.
    static bool isEnrolmentStep(const QString& title);

    /// Whether the screen @p title may come up. Opens the session where no password is needed.
    bool admits(const QString& title);
    /// Whether the session is open, or a password would have to be entered. A terminal that was
    /// never set up has none; while its settings are not known nobody can tell.
    bool isOpen();
    void open() { open_ = true; }

    /// Somebody enrols whom no administrator has let in: at the live view or by order of the
    /// management service. Ends the session.
    void beginEnrolment();
    void endEnrolment() { enrolsAtDoor_ = false; }
    bool enrolsAtDoor() const { return enrolsAtDoor_; }

    /// The screen @p title is about to come up.
    void screenChanging(const QString& title);

 private:
    const std::function<std::optional<_gui_menu_>()> settings_;
    bool open_ = false;
    bool enrolsAtDoor_ = false;
};
