#pragma once

#include "screens/common/screen_popup.h"
#include "screens/common/titled_form.h"
#include "screens/users/enrol_flow.h"

class DeviceRequest;
class StepBar;
struct _gui_user_;

/// A screen of an enrolment. Where its buttons lead the EnrolFlow knows that it came up with.
/// Whoever breaks off gets back to where the enrolment began: the user menu, or the standby screen
/// when that was the live view or the management service. So does everybody when the controller is
/// lost, or when registration mode ends under somebody who enrols by it.
///
/// Its form may have a StepBar, which shows how far the enrolment has come.
class EnrolStep : public TitledForm {
    Q_OBJECT

 public:
    EnrolStep(QWidget* parent, const QString& title);

    /// An EnrolFlow, as the steps hand it to each other.
    void setParam(QVariant param) override;
    void windowInEvent() override;
    void windowOutEvent() override;
    void deviceAnswer(const DeviceMessage& message) override;
    void peersChanged() override;
    void settingsChanged(const SettingsChange& change) override;

    /// The controller offers @p id as the customer number, which it may at any step; kept unless
    /// there is one, or the user is there already.
    virtual void autoId(const QString& id);
    /// The enrolment is over, and its popup has been read: back to where it began.
    void enrollCompleted() { leave(); }

 protected:
    /// Numbers of the popups that all steps have besides their own.
    enum CommonPopup { Completed = 42, NoConnection = 1001, NoAnswer, RegistrationOff };

    static constexpr int kAnswerTime = 5000;  // milliseconds

    /// To be called by FormScreen.
    void connectForm(TopBar* bar);
    ScreenPopup& popup() { return popup_; }

    const EnrolFlow& flow() const { return flow_; }
    void setFlow(const EnrolFlow& flow) { flow_ = flow; }
    /// Shows how far the enrolment has come.
    void showFlow();

    /// The forward button; goes on to the next step.
    virtual void nextButtonTouch();
    void prevButtonTouch() override;
    void homeButtonTouch() override;
    /// Breaks off what the controller still does for this step; called again without harm.
    virtual void abandon() {}
    void leave();
    /// Nothing more comes of the enrolment: breaks off, shows popup @p number and leaves when it
    /// closes.
    void endWith(int number, int seconds = ScreenPopup::kSeconds, const QString& second = {});
    /// The same for the enrolment that has come to its end.
    void complete();

    /// The shell's user record.
    static _gui_user_ user();
    static void setUser(const _gui_user_& user);
    /// Sends @p user to be stored, with the time where it has none yet, as what @p request waits
    /// for. False, with nothing sent, when there is no link.
    static bool store(_gui_user_ user, DeviceRequest& request);

 private:
    ScreenPopup popup_;
    EnrolFlow flow_;
    TopBar* bar_ = nullptr;
    StepBar* stepBar_ = nullptr;
    bool ended_ = false;
};
