#include "ui/visible_timer.h"

#include <QEvent>
#include <QWidget>

VisibleTimer::VisibleTimer(QWidget* widget) : QTimer(widget), widget_(widget) {
    widget->installEventFilter(this);
}

void VisibleTimer::start() {
    if (widget_->isVisible())
        QTimer::start();
    else
        stop();
}

void VisibleTimer::start(int milliseconds) {
    setInterval(milliseconds);
    start();
}

bool VisibleTimer::eventFilter(QObject*, QEvent* event) {
    if (event->type() == QEvent::Hide)
        stop();
    return false;
}
