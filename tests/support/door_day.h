#pragma once

#include "base/clock.h"
#include "link/command_code.h"
#include "tests/support/driven_test.h"
#include "ui/visible_timer.h"

/// Notes what is painted on the active screen.
class PaintCounter : public QObject {
 public:
    explicit PaintCounter(const MainWindow* window) : root_(window->getActivateWindowForm()) {
        qApp->installEventFilter(this);
    }

    int count = 0;
    QRegion region;  // on the root

 protected:
    bool eventFilter(QObject* watched, QEvent* event) override {
        auto* widget = qobject_cast<QWidget*>(watched);
        if (event->type() == QEvent::Paint && (widget == root_ || root_->isAncestorOf(widget))) {
            ++count;
            region |= static_cast<QPaintEvent*>(event)->region().translated(
                widget->mapTo(root_->window(), QPoint()));
        }
        return false;
    }

 private:
    QWidget* const root_;
};

/// A day at the door: the real terminal, with a finger on its panel, and the simulated controller.
/// Each test begins at the standby screen, one morning, with the same settings.
class DoorDay : public DrivenTest {
    Q_OBJECT

 private slots:
    void init() {
        Clock::fix(QDateTime(QDate(2026, 3, 9), QTime(8, 52)));
        QVERIFY(begin());
        words({"track off", "status auto", "time 2026-03-09 08:52",
               "settings operation.weekdayIn 08:00~09:30",
               "settings operation.weekdayOut 17:30~22:00",
               "settings operation.saturdayIn 08:00~10:00",
               "settings operation.saturdayOut 13:00~18:00", "settings setup.authMethod 2"});
        for (const char* off : {"setup.operation", "setup.alarmMode", "operation.attendanceMode",
                                "operation.lunchOff", "operation.supperOff",
                                "operation.doorOpenSetting", "screen.standbyMode"})
            set(off, 0);
        for (const char* on : {"setup.language", "setup.visitorCall", "registration.on",
                               "operation.saveSimpleAccess", "screen.showThumbnail"})
            set(on, 1);
        for (const char* time :
             {"liveSeconds", "resultSeconds", "paymentDoneSeconds", "attendanceDoneSeconds"})
            set(time, 60);
        QVERIFY(t->open("stayWindow"));
    }

 protected:
    /// The time of the screen that is up.
    VisibleTimer* timer() const {
        return window()->getActivateWindowForm()->findChild<VisibleTimer*>(
            QString(), Qt::FindDirectChildrenOnly);
    }
    /// Has the controller send @p record, and waits until it has arrived.
    template <typename Record>
    void frame(quint16 code, const Record& record) {
        const QByteArray bytes(reinterpret_cast<const char*>(&record), sizeof record);
        const QString hex = QLatin1String(bytes.toHex());
        QVERIFY(t->tell(QStringLiteral("frame %1 0 0 %2").arg(code).arg(hex)) && t->settle());
    }
};
