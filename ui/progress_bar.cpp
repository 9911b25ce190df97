#include "ui/progress_bar.h"

#include <QPainter>
#include <QPainterPath>

#include "ui/paint.h"
#include "ui/theme.h"

ProgressBar::ProgressBar(QWidget* parent) : QWidget(parent) {
    setObjectName(QStringLiteral("ProgressBar"));
}

void ProgressBar::setValue(int percent) {
    percent = qBound(0, percent, 100);
    if (value_ == percent)
        return;
    value_ = percent;
    update();
}

void ProgressBar::setInDialog(bool inDialog) {
    inDialog_ = inDialog;
    update();
}

QSize ProgressBar::sizeHint() const {
    return {366, 12};
}

void ProgressBar::paintEvent(QPaintEvent*) {
    QPainter painter(this);
    const qreal radius = height() / 2.0;
    Paint::box(&painter, rect(), radius, inDialog_ ? Theme::kBackground : Theme::kRaised);
    // A filling narrower than its own round ends would bulge out of the track.
    QPainterPath track;
    track.addRoundedRect(rect(), radius, radius);
    painter.setClipPath(track);
    const qreal filled = width() * value_ / 100.0;
    Paint::box(&painter, {filled - width() - radius, 0, width() + radius, qreal(height())}, radius,
               Theme::kAccent);
}
