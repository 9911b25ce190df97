#include "bench/scenario/painting.h"

#include <QApplication>
#include <QDeadlineTimer>
#include <QPaintEvent>
#include <QWidget>
#include <utility>

namespace {

constexpr int kLongestWait = 10000;  // milliseconds

}  // namespace

PaintWatch::PaintWatch(const QWidget* screen) : screen_(screen) {
    qApp->installEventFilter(this);
    timer_.start();
}

double PaintWatch::wait() const {
    waitUntil([] { return false; });
    return complete_;
}

void PaintWatch::waitWhileVisible() const {
    waitUntil([this] { return !screen_->isVisible(); });
}

void PaintWatch::waitUntil(const std::function<bool()>& end) const {
    const QDeadlineTimer limit(kLongestWait);
    while (complete_ < 0 && !end()) {
        QCoreApplication::processEvents();
        if (limit.hasExpired())
            qFatal("%s was not painted", qPrintable(screen_->objectName()));
    }
}

bool PaintWatch::eventFilter(QObject* watched, QEvent* event) {
    // Delivered from here, so that the moment of its end is known.
    if (event->type() == QEvent::UpdateRequest && !painting_) {
        painting_ = true;
        QCoreApplication::sendEvent(watched, event);
        painting_ = false;
        if (painted_ && complete_ < 0)
            complete_ = static_cast<double>(timer_.nsecsElapsed()) / 1e6;
        return true;
    }
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
        if (widget->isVisible() &&
            (widget->autoFillBackground() || widget->testAttribute(Qt::WA_OpaquePaintEvent)))
            widgets.append(widget);
    }
    // What else is on its way is no part of it.
    QCoreApplication::processEvents();
    const PaintWatch watch(screen);
    for (QWidget* widget : qAsConst(widgets))
        widget->update();
    return watch.wait();
}
