#include "ui/widget_button.h"

#include <QMouseEvent>
#include <QPainter>
#include <QPointer>
#include <QTimerEvent>

#include "ui/key_click.h"
#include "ui/paint.h"
#include "ui/theme.h"

namespace {

constexpr int kRepeatDelayMs = 500;
constexpr int kRepeatMs = 100;

}  // namespace

WidgetButton::WidgetButton(QWidget* parent) : QWidget(parent) {
    setObjectName(QStringLiteral("WidgetButton"));
    // A touch on a disabled control must not become one on what lies behind it.
    setAttribute(Qt::WA_NoMousePropagation);
}

void WidgetButton::setSelected(bool selected) {
    if (selected_ == selected)
        return;
    selected_ = selected;
    update();
}

void WidgetButton::cancelTouch() {
    pressed_ = false;
    repeat_.stop();
    setDown(false);
}

void WidgetButton::mousePressEvent(QMouseEvent* event) {
    if (event->button() != Qt::LeftButton || !isTouchable()) {
        event->ignore();
        return;
    }
    if (busy_)
        return;
    pressed_ = true;
    repeated_ = false;
    touchPoint_ = event->pos();
    setDown(true);
    if (keyClick_)
        KeyClick::send();
    if (autoRepeat_)
        repeat_.start(kRepeatDelayMs, this);
}

void WidgetButton::mouseMoveEvent(QMouseEvent* event) {
    if (pressed_)
        setDown(rect().contains(event->pos()));
}

void WidgetButton::mouseReleaseEvent(QMouseEvent* event) {
    if (!pressed_ || event->button() != Qt::LeftButton)
        return;
    touchPoint_ = event->pos();
    const bool counts = rect().contains(event->pos()) && !repeated_;
    cancelTouch();
    if (counts)
        act();
}

void WidgetButton::timerEvent(QTimerEvent* event) {
    if (event->timerId() != repeat_.timerId()) {
        QWidget::timerEvent(event);
        return;
    }
    repeat_.start(kRepeatMs, this);
    repeated_ = true;
    if (down_)
        act();
}

void WidgetButton::hideEvent(QHideEvent*) {
    cancelTouch();
}

void WidgetButton::changeEvent(QEvent* event) {
    if (event->type() == QEvent::EnabledChange)
        cancelTouch();
    QWidget::changeEvent(event);
}

void WidgetButton::paintEvent(QPaintEvent*) {
    QPainter painter(this);
    drawRow(&painter, rect(), Theme::kRadiusControl);
}

void WidgetButton::drawRow(QPainter* painter, const QRect& box, int radius) const {
    Paint::row(painter, box, radius, down_, selected_ && isEnabled());
}

void WidgetButton::drawField(QPainter* painter, const QRect& box, bool pressed,
                             bool focused) const {
    if (!isEnabled())
        Paint::box(painter, box, Theme::kRadiusControl, Theme::kRow, Theme::kOffLine, 1);
    else if (focused)
        Paint::box(painter, box, Theme::kRadiusControl, Theme::kBackground, Theme::kAccent, 2);
    else
        Paint::box(painter, box, Theme::kRadiusControl,
                   pressed ? Theme::kRowPressed : Theme::kBackground, Theme::kOutline, 1);
}

void WidgetButton::setDown(bool down) {
    if (down_ == down)
        return;
    down_ = down;
    downChanged();
}

void WidgetButton::act() {
    busy_ = true;
    const QPointer<WidgetButton> self(this);
    emit touched();
    // Presses that came in meanwhile are delivered before this is.
    if (self)
        QMetaObject::invokeMethod(
            this, [this] { busy_ = false; }, Qt::QueuedConnection);
}
