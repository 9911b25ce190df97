#include "ui/touch_shield.h"

#include "ui/widget_button.h"

namespace {

int shieldTime = 300;  // milliseconds

}  // namespace

TouchShield::TouchShield(QWidget* parent) : QWidget(parent) {
    setObjectName(QStringLiteral("touchShield"));
    setAttribute(Qt::WA_NoMousePropagation);
    hide();
    timer_.setSingleShot(true);
    connect(&timer_, &QTimer::timeout, this, &QWidget::hide);
}

void TouchShield::raiseShield() {
    const auto buttons = parentWidget()->findChildren<WidgetButton*>();
    for (WidgetButton* button : buttons)
        button->cancelTouch();
    if (shieldTime == 0)
        return;
    setGeometry(parentWidget()->rect());
    show();
    raise();
    timer_.start(shieldTime);
}

void TouchShield::setTime(int ms) {
    shieldTime = ms;
}
