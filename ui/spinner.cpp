#include "ui/spinner.h"

#include <QPainter>

#include "ui/paint.h"

namespace {

constexpr int kFrames = 8;
constexpr int kFrameMs = 100;

}  // namespace

Spinner::Spinner(QWidget* parent) : QWidget(parent) {
    setObjectName(QStringLiteral("Spinner"));
}

QSize Spinner::sizeHint() const {
    return {72, 72};
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
    Paint::icon(&painter, rect(), QStringLiteral("wait_%1.png").arg(frame_));
}
