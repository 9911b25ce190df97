#include "ui/spinner.h"

#include <QPainter>

#include "ui/paint.h"
#include "ui/pictures.h"

namespace {

constexpr int kFrames = 8;
constexpr int kFrameMs = 100;
constexpr int kSmall = 40;

}  // namespace

Spinner::Spinner(QWidget* parent) : QWidget(parent) {
    setObjectName(QStringLiteral("Spinner"));
}

QSize Spinner::sizeHint() const {
    return small_ ? QSize(kSmall, kSmall) : QSize(72, 72);
}

void Spinner::showEvent(QShowEvent*) {
    frame_ = 0;
    timer_.start(kFrameMs, this);
}

void Spinner::hideEvent(QHideEvent*) {
    timer_.stop();
}

void Spinner::timerEvent(QTimerEvent*) {
    frame_ = (frame_ + 1) % kFrames;
    update();
}

void Spinner::paintEvent(QPaintEvent*) {
    QPainter painter(this);
    const QString picture = QStringLiteral("wait_%1.png").arg(frame_);
    if (!small_) {
        Paint::icon(&painter, rect(), picture);
        return;
    }
    painter.setRenderHint(QPainter::SmoothPixmapTransform);
    painter.drawPixmap(QRect(0, (height() - kSmall) / 2, kSmall, kSmall), Pictures::icon(picture));
}
