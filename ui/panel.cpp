#include "ui/panel.h"

#include <QPainter>

#include "ui/paint.h"
#include "ui/theme.h"

void Panel::paintEvent(QPaintEvent*) {
    QPainter painter(this);
    Paint::box(&painter, rect(), Theme::kRadiusCard, Theme::kRow);
}
