#pragma once

#include <initializer_list>
#include <memory>

#include "app/window_form.h"
#include "link/device_records.h"
#include "screens/recognize/arm_mode_ok_form.h"
#include "screens/recognize/work_state.h"
#include "ui/visible_timer.h"

namespace Ui {
class RecognizeWindow;
}
class TouchShield;

/// The result of one recognition: who it was, what came of it, and what the person has to choose,
/// if anything. It goes away by itself; a result that arrives meanwhile takes its place.
///
/// Its parameter is the title of the screen to go on with; the live view without one, or the
/// standby screen when the person cancels.
class RecognizeWindow : public WindowForm {
    Q_OBJECT

 public:
    /// What a result is about besides access.
    enum class EVENT_TYPE { Access = 0, Alarm = 2 };
    /// How the alarm's change is shown.
    enum class ARM_BTN_TYPE { None = 0, Ok = 1 };

    RecognizeWindow(QWidget* parent, const QString& title);
    ~RecognizeWindow() override;

    void deviceAnswer(const DeviceMessage& message) override;
    /// Its own time and not the menus' ends it.
    bool timesOut() const override { return false; }
    bool coversDialogs() const override { return true; }
    /// Below the panel and the buttons.
    int noticeTop() const override { return 776; }

    /// Begins the result of the user @p userId: result text, operating mode, display time.
    void setUserID(const QString& userId);
    /// Shows who it is and forgets what an earlier result asked for.
    void showPage();
    /// Shows the picture of @p userId, a silhouette when there is none or @p show is 0.
    void setThumbnail(int show, const QString& userId);
    /// Offers what the person may choose, or confirms what has been done.
    void selectMenu();
    /// The result changes the alarm as well.
    void setArmEvent(EVENT_TYPE event, ARM_BTN_TYPE button, ArmState state);

    void inButtonTouch();
    void outButtonTouch();
    void outDutyButtonTouch();
    void inDutyButtonTouch();
    void plusButtonTouch();
    void minusButtonTouch();
    void paymentButtonTouch();
    void cancelButtonTouch();
    void menuButtonTouch();
    void timerEnd();

 signals:
    /// A result is ready to be seen.
    void resultReady();
    /// Somebody wants the administrator's menu.
    void menuRequested();

 protected:
    void createForm() override;
    void scriptsApplied() override;
    void showEvent(QShowEvent* event) override;
    void hideEvent(QHideEvent* event) override;

 private:
    /// Nobody's result: nothing but the ground.
    void showNobody();
    void viewStateMode();
    void updatePaymentCount();
    void recordAttendance(const WorkState::Attendance& event);
    void changePaymentCount(int count);
    /// To the screen of the parameter, or else to @p title.
    void leaveTo(const QString& title);
    void showLower(std::initializer_list<const QWidget*> shown);
    void startTimer(int seconds);
    QString resultKey() const;
    bool accepted() const;
    bool asksPayment() const;
    bool betweenMeals() const;

    std::unique_ptr<Ui::RecognizeWindow> ui_;
    TouchShield* shield_ = nullptr;
    RecognitionResult result_{};
    WorkMode workMode_ = WorkMode::AccessOnly;  // in force when the result arrived
    const WorkState::Attendance* recorded_ = nullptr;
    ArmState arm_ = ArmState::None;
    int paymentCount_ = 0;
    bool paymentDone_ = false;
    VisibleTimer timer_{this};
};
