#include "screens/recognize/animation_play_widget.h"

#include <QPainter>
#include <QTimerEvent>

#include "ui/pictures.h"

void AnimationPlayWidget::play(const QStringList& pictures, int interval, bool loop) {
    frames_ = pictures;
    interval_ = interval;
    loop_ = loop;
    frame_ = 0;
    update();
    run();
}

void AnimationPlayWidget::run() {
    const bool more = loop_ ? frames_.size() > 1 : frame_ + 1 < frames_.size();
    if (more && isVisible())
        timer_.start(interval_, this);
    else
        timer_.stop();
}

void AnimationPlayWidget::timerEvent(QTimerEvent* event) {
    if (event->timerId() != timer_.timerId()) {
        QWidget::timerEvent(event);
        return;
    }
    frame_ = (frame_ + 1) % frames_.size();
    update();
    run();
}

void AnimationPlayWidget::showEvent(QShowEvent* event) {
    QWidget::showEvent(event);
    run();
}

void AnimationPlayWidget::hideEvent(QHideEvent* event) {
    QWidget::hideEvent(event);
    timer_.stop();
}

void AnimationPlayWidget::paintEvent(QPaintEvent*) {
    if (frames_.isEmpty())
        return;
    const QPixmap picture = Pictures::icon(frames_.at(frame_));
    QPainter(this).drawPixmap((width() - picture.width()) / 2, (height() - picture.height()) / 2,
                              picture);
}
