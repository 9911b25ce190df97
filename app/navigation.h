#pragma once

#include <QObject>
#include <functional>
#include <optional>

#include "app/administrator_session.h"
#include "app/menu_timer.h"
#include "app/window_registry.h"

/// The way from screen to screen: the registry of all of them, whom they are for, and the time
/// after which an unattended one is left. GUI thread only.
class Navigation : public QObject {
    Q_OBJECT

 public:
    /// @p settings gives the settings in force, nothing while the controller has told none.
    Navigation(std::function<std::optional<_gui_menu_>()> settings, QObject* parent);

    WindowRegistry& windows() { return windows_; }
    AdministratorSession& session() { return session_; }
    MenuTimer& menuTimer() { return menuTimer_; }
    WindowForm* active() const { return windows_.active(); }
    /// Whether @p title is that of the screen that is up.
    bool isActive(const QString& title) const;

    /// Shows the screen @p title, as WindowRegistry::change(); where it takes the administrator and
    /// nobody has shown to be that, refuses and asks for the password first.
    int change(const QString& title, const QVariant* param = nullptr);
    /// As WindowShell has them.
    void asAdministrator(const std::function<void()>& request);
    void passwordEntered(const PasswordPurpose& purpose);
    int enrolAtDoor(int enrolMode);
    QString enrolmentReturnTitle() const;

    /// Gives the screen @p title, which is about to come up, its time, unless it never times out;
    /// factory screens and all that come up after the first of them do not.
    void startTime(const QString& title);

 signals:
    /// The time of the active screen is over; it is left next.
    void timedOut();

 private:
    void askPassword(const PasswordPurpose& purpose);
    void leaveUnattended(const QString& returnTitle);

    WindowRegistry windows_;
    AdministratorSession session_;
    MenuTimer menuTimer_;
    bool factoryActive_ = false;
};
