#pragma once

#include <QObject>
#include <QString>
#include <QTimer>
#include <functional>

#include "app/screen_titles.h"

struct _gui_menu_;

/// Brings an unattended terminal back to its idle screen. GUI thread only.
class MenuTimer : public QObject {
    Q_OBJECT

 public:
    /// @p settings gives the settings in force.
    MenuTimer(std::function<_gui_menu_()> settings, QObject* parent);

    /// The seconds of the settings' choice, 0 for never; an unknown one counts as that.
    static int timeout(int selector);

    /// Starts with the time of the settings, to return to the standby screen.
    void start();
    /// Starts with @p seconds (0: no time-out), to return to @p returnTitle. A terminal that has
    /// not been set up never times out.
    void start(int seconds, const QString& returnTitle);
    /// Starts the time anew if it was running.
    void reset();
    /// Starts anew with other @p seconds and the same return window; 0 only stops.
    void reset(int seconds);
    void updateReset(int selector) { reset(timeout(selector)); }
    void stop();

    bool isRunning() const { return timer_.isActive(); }
    int seconds() const { return seconds_; }
    QString returnTitle() const { return returnTitle_; }

 signals:
    /// The time is over; the terminal is to show @p returnTitle.
    void timedOut(const QString& returnTitle);

 private:
    void timeoutEvent();
    void run(int seconds);

    const std::function<_gui_menu_()> settings_;
    QTimer timer_{this};
    bool active_ = false;
    int seconds_ = 3;
    QString returnTitle_ = screen_title::kStandby;
};

/// Notices every touch in the whole application, wherever it lands, so that a tap without a move
/// keeps a screen awake too. Lives as long as the application wants it; GUI thread only.
class TouchWatcher : public QObject {
    Q_OBJECT

 public:
    explicit TouchWatcher(QObject* parent);

 signals:
    void touched();

 protected:
    bool eventFilter(QObject* watched, QEvent* event) override;
};
