#include "bench/scenario/painting.h"

#include <QApplication>
#include <QDeadlineTimer>
#include <QElapsedTimer>
#include <QPaintEvent>
#include <QWidget>
#include <utility>

namespace {

constexpr int kLongestWait = 10000;  // milliseconds

}  // namespace

PaintWatch::PaintWatch(const QWidget* screen) : screen_(screen) {
    qApp->installEventFilter(this);
}

void PaintWatch::wait() const {
    waitUntil([] { return false; });
}

void PaintWatch::waitWhileVisible() const {
    waitUntil([this] { return !screen_->isVisible(); });
}

void PaintWatch::waitUntil(const std::function<bool()>& end) const {
    const QDeadlineTimer limit(kLongestWait);
    while (!painted_ && !end()) {
        QCoreApplication::processEvents();
        if (limit.hasExpired())
            qFatal("%s was not painted", qPrintable(screen_->objectName()));
    }
}

bool PaintWatch::eventFilter(QObject* watched, QEvent* event) {
    // Where widgets cover a screen altogether, nothing of its own is painted.
    if (event->type() == QEvent::Paint && !painted_) {
        const auto* widget = qobject_cast<QWidget*>(watched);
        painted_ = widget == screen_ || screen_->isAncestorOf(widget);
    }
    return QObject::eventFilter(watched, event);
}

PaintMeter::PaintMeter(const QWidget* window) : window_(window) {
    qApp->installEventFilter(this);
}

std::vector<double> PaintMeter::frames() {
    endFrame();
    return std::exchange(frames_, {});
}

bool PaintMeter::eventFilter(QObject* watched, QEvent* event) {
    if (event->type() == QEvent::UpdateRequest && watched == window_) {
        endFrame();
    } else if (event->type() == QEvent::Paint) {
        const auto* widget = qobject_cast<QWidget*>(watched);
        if (widget != nullptr && widget->window() == window_)
            region_ |= static_cast<QPaintEvent*>(event)->region().translated(
                widget->mapTo(window_, QPoint()));
    }
    return QObject::eventFilter(watched, event);
}

void PaintMeter::endFrame() {
    int pixels = 0;
    for (const QRect& rect : std::exchange(region_, {}))
        pixels += rect.width() * rect.height();
    if (pixels > 0)
        frames_.push_back(pixels);
}

double repaint(QWidget* screen) {
    // A screen's update takes in all its widgets but those that hide what is behind them.
    QList<QWidget*> widgets{screen};
    for (QWidget* widget : screen->findChildren<QWidget*>()) {
        if (widget->autoFillBackground() || widget->testAttribute(Qt::WA_OpaquePaintEvent))
            widgets.append(widget);
    }
    const PaintWatch watch(screen);
    QElapsedTimer timer;
    timer.start();
    for (QWidget* widget : qAsConst(widgets))
        widget->update();
    watch.wait();
    return static_cast<double>(timer.nsecsElapsed()) / 1e6;
}
