#pragma once

#include <memory>

#include "app/window_form.h"
#include "ui/visible_timer.h"

namespace Ui {
class LiveView;
}
class DialogForm;
struct TrackedFace;
struct _gui_user_;

/// The live view: the camera's picture with the box around the face, over it the banner of the
/// operating mode, below it the buttons. On the panel the picture lies under the window and shows
/// through; elsewhere a silhouette stands in for it.
class LiveView : public WindowForm {
    Q_OBJECT

 public:
    LiveView(QWidget* parent, const QString& title);
    ~LiveView() override;

    void deviceAnswer(const DeviceMessage& message) override;
    void workModeChanged() override;
    void settingsChanged(const SettingsChange& change) override;
    void peersChanged() override;
    /// Between the picture and the buttons.
    int noticeTop() const override;
    void enrolRequested() override;
    /// Its own time and not the menus' ends it, since a face that is there is no touch.
    bool timesOut() const override { return false; }

    /// Shows the banner of an operating mode by its number. Without one of its own the banner
    /// stays as it was.
    void updateWorkState(int mode);
    void setTrackingBox(const TrackedFace& face);
    /// Gives the live view its whole time again; it begins when no dialog is open over it.
    void setLiveShowTimerReset();
    /// Stays as long as @p dialog, one of the live view, is open.
    void watch(QWidget* dialog);
    /// Somebody is known: to the result, whatever screen is up.
    void verified();

    /// Nobody is there: to the standby screen.
    void liveEnd();
    /// Calls for somebody to come to the door.
    void doorRing();
    /// To the entry of a number.
    void inputSub();
    /// To the enrolment of whoever stands there.
    void enrollButtonTouch();
    /// To the administrator's menu, past the password if one is set.
    void homeButtonTouch();

 protected:
    void createForm() override;
    void showEvent(QShowEvent* event) override;
    void hideEvent(QHideEvent* event) override;
    void mousePressEvent(QMouseEvent* event) override;
    void paintEvent(QPaintEvent* event) override;
    bool eventFilter(QObject* watched, QEvent* event) override;

 private:
    /// Sees to it that faces are looked for.
    void recognise();
    /// Ends what the screen that is up would still do by itself: the start, or standing by.
    void takeOver();
    void openMealCounts();
    void startEnrolment(_gui_user_ user);
    void showSettings();
    void showBanner(bool shown);
    void showPeers();
    /// Keeps what is said about a face clear of what stands above and below the picture.
    void placeReasons();

    std::unique_ptr<Ui::LiveView> ui_;
    DialogForm* doorDialog_ = nullptr;
    VisibleTimer liveTimer_{this};
};
