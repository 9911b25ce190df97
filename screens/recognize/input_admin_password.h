#pragma once

#include <QDeadlineTimer>
#include <QTimer>

#include "screens/common/form_screen.h"
#include "ui_input_admin_password.h"

/// Asks for the administrator's password, for the PasswordPurpose that is its parameter; without
/// one, before the menu. Three wrong ones in a row lock the entry for a while, which leaving the
/// screen does not shorten.
class InputAdminPassword : public FormScreen<Ui::InputAdminPassword> {
    Q_OBJECT

 public:
    InputAdminPassword(QWidget* parent, const QString& title);

    void windowInEvent() override;
    void windowOutEvent() override;
    void settingsChanged(const SettingsChange& change) override;
    /// How long the entry is locked, in milliseconds; 30 seconds unless a test cannot wait.
    void setLockTime(int ms) { lockTime_ = ms; }

 protected:
    void built() override;
    void scriptsApplied() override;

 private:
    void okButtonTouch();
    void proceed();
    void refuse();
    void say(const QString& key, const QString& argument = {});
    void sayMessage();
    void showEntry();

    int wrong_ = 0;
    int lockTime_ = 30000;
    QDeadlineTimer lockedUntil_;
    QTimer countdown_;
    QString argument_;  // of the message
};
