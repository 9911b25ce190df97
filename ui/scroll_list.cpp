#include "ui/scroll_list.h"

#include <QScrollBar>

#include "ui/finger_scroll.h"
#include "ui/theme.h"

namespace {

constexpr int kRevealMargin = 8;  // beyond the row, so that one sees that it goes on

}  // namespace

ScrollList::ScrollList(QWidget* parent) : QScrollArea(parent), finger_(new FingerScroll(this)) {
    setObjectName(QStringLiteral("ScrollList"));
    setGround(Theme::kBackground);
}

void ScrollList::setGround(QRgb color) {
    QPalette ground = palette();
    ground.setColor(QPalette::Window, Theme::color(color));
    ground.setColor(QPalette::Base, Theme::color(color));
    setPalette(ground);
}

void ScrollList::setIndicatorMargin(int margin) {
    finger_->setIndicatorMargin(margin);
}

void ScrollList::setCoveredHeight(int height) {
    setViewportMargins(0, 0, 0, height);
    finger_->setCoveredHeight(height);
}

void ScrollList::reveal(const QWidget* target) {
    if (!widget() || !widget()->isAncestorOf(target))
        return;
    finger_->stop();
    while (target->parentWidget() != widget())
        target = target->parentWidget();
    const QPoint center = target->geometry().center();
    ensureVisible(center.x(), center.y(), 0, target->height() / 2 + kRevealMargin);
}

void ScrollList::rewind() {
    finger_->stop();
    verticalScrollBar()->setValue(0);
}
