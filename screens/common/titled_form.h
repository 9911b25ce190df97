#pragma once

#include "app/window_form.h"

class TopBar;

/// A screen with a title bar, whose buttons, rows and tiles lead where its form says by dynamic
/// properties: "backTarget" and "forwardTarget" of the bar, "target" of everything else that can be
/// touched. Each holds the title of a screen. The home button leads to the standby screen.
///
/// Its DeviceRequest children get what the controller says to the screen, and end with the screen
/// or the link. A screen that overrides one of the three operations for that calls it too.
class TitledForm : public WindowForm {
    Q_OBJECT

 public:
    using WindowForm::WindowForm;

    void windowOutEvent() override;
    void deviceAnswer(const DeviceMessage& message) override;
    void peersChanged() override;
    bool isWaiting() const override;

 protected:
    /// To be called when the form is there; FormScreen does.
    void connectForm(TopBar* bar);
    const QString& backTarget() const { return backTarget_; }
    /// Where the bar's buttons lead; a screen with more to do when it is left overrides them.
    virtual void prevButtonTouch();
    virtual void homeButtonTouch();

 private:
    QString backTarget_;
};
