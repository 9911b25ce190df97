#pragma once

#include <QCoreApplication>
#include <QTest>
#include <QWidget>
#include <QWindow>

/// A finger on a shown window. It goes through the window, so the widget below it is found and
/// keeps the touch as it does on the terminal.
class Finger {
 public:
    explicit Finger(QWidget* window) : window_(window) {}

    void down(const QPoint& at) { QTest::mousePress(handle(), Qt::LeftButton, {}, at_ = at); }
    void down(const QWidget* on) { down(on->mapTo(window_, on->rect().center())); }
    void move(int dx, int dy) {
        constexpr int kSteps = 4;
        const QPoint start = at_;
        for (int i = 1; i <= kSteps; ++i)
            QTest::mouseMove(handle(), at_ = start + QPoint(dx * i / kSteps, dy * i / kSteps));
    }
    /// After lying still for @p rest milliseconds, if any.
    void up(int rest = -1) { QTest::mouseRelease(handle(), Qt::LeftButton, {}, at_, rest); }
    /// At a QPoint of the window or in the middle of a QWidget.
    template <class Place>
    void tap(const Place& place) {
        down(place);
        up();
        QCoreApplication::processEvents();
    }

 private:
    QWindow* handle() const { return window_->windowHandle(); }

    QWidget* window_;
    QPoint at_;
};
