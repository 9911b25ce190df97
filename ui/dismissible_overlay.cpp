#include "ui/dismissible_overlay.h"

#include <QMouseEvent>

DismissibleOverlay::DismissibleOverlay(QWidget* owner)
    : DialogOverlay(owner->window()), owner_(owner) {
    setDeleteOnClose(true);
    // The finger that has opened it knows what it is about to touch.
    takeTouchesAtOnce();
    owner->installEventFilter(this);
}

bool DismissibleOverlay::closesAt(const QPoint& point) const {
    return !card()->geometry().contains(point);
}

bool DismissibleOverlay::eventFilter(QObject* watched, QEvent* event) {
    if (watched == owner_ && event->type() == QEvent::Hide)
        hide();
    return DialogOverlay::eventFilter(watched, event);
}

void DismissibleOverlay::mousePressEvent(QMouseEvent* event) {
    closing_ = closesAt(event->pos());
}

void DismissibleOverlay::mouseReleaseEvent(QMouseEvent* event) {
    // Both ends of the touch count, so that a slip does not close it.
    if (closing_ && closesAt(event->pos()))
        hide();
}
