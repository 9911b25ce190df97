#pragma once

#include <QtTest>
#include <memory>
#include <utility>

#include "base/clock.h"
#include "link/command_code.h"
#include "tests/support/driven_terminal.h"

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
class DoorDay : public QObject {
    Q_OBJECT

 private slots:
    void initTestCase() {
        t = std::make_unique<DrivenTerminal>();
        t->root.write("/mnt/data/rebootchkr", {});
        QVERIFY(t->start());
    }
    void init() {
        Clock::fix(QDateTime(QDate(2026, 3, 9), QTime(8, 52)));
        DialogOverlay::closeAll(t->window.get());
        t->window->changeWindow(QStringLiteral("stayWindow"));
        for (const char* line : {"track off", "status auto", "time 2026-03-09 08:52",
                                 "settings operation.weekdayIn 08:00~09:30",
                                 "settings operation.weekdayOut 17:30~22:00",
                                 "settings operation.saturdayIn 08:00~10:00",
                                 "settings operation.saturdayOut 13:00~18:00"})
            word(line);
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
        set("setup.authMethod", 2);
        QVERIFY(t->open("stayWindow"));
    }
    void cleanupTestCase() { t.reset(); }

 protected:
    void word(const char* line) { QVERIFY2(t->tell(line), line); }
    void set(const char* field, int value) {
        QVERIFY2(t->set({{field, QString::number(value)}}), field);
    }
    template <typename Record>
    void frame(quint16 code, const Record& record) {
        const QByteArray bytes(reinterpret_cast<const char*>(&record), sizeof record);
        QVERIFY(
            t->tell(QStringLiteral("frame %1 0 0 %2").arg(code).arg(QLatin1String(bytes.toHex()))));
    }
    /// What the terminal has sent since this was last asked, without key clicks.
    QStringList sent() {
        if (!t->settle())
            return {QStringLiteral("lost")};
        t->frames.removeAll(QStringLiteral("5000 0 0"));
        return std::exchange(t->frames, {});
    }

    std::unique_ptr<DrivenTerminal> t;
};
