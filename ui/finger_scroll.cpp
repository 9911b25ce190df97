#include "ui/finger_scroll.h"

#include <QAbstractScrollArea>
#include <QChildEvent>
#include <QCoreApplication>
#include <QPainter>
#include <QScrollBar>
#include <QTimerEvent>

#include "ui/paint.h"
#include "ui/theme.h"
#include "ui/widget_button.h"

namespace {

constexpr int kScrollAfter = 12;  // pixels; less is the finger's trembling
constexpr int kHoldMs = 70;

constexpr int kFrameMs = 16;
constexpr ulong kSpeedMs = 100;     // the last part of a move, which tells its speed
constexpr double kSlowest = 200;    // pixels a second; less is no throw
constexpr double kFastest = 4000;   // pixels a second
constexpr double kSlowDown = 2500;  // pixels a second, each second

constexpr int kIndicatorWidth = 6;
constexpr int kIndicatorMargin = 5;
constexpr int kIndicatorInset = 8;
constexpr int kShortestThumb = 40;

class Indicator : public QWidget {
 public:
    Indicator(const QScrollBar* position, QWidget* parent) : QWidget(parent), position_(position) {
        setAttribute(Qt::WA_TransparentForMouseEvents);
        hide();
    }

 protected:
    void paintEvent(QPaintEvent*) override {
        QPainter painter(this);
        const qreal radius = width() / 2.0;
        Paint::box(&painter, rect(), radius, Theme::kRow);
        const qreal range = position_->maximum() - position_->minimum();
        const qreal page = position_->pageStep();
        if (range <= 0)
            return;
        const qreal thumb = qMax<qreal>(kShortestThumb, height() * page / (range + page));
        const qreal top = (height() - thumb) * (position_->value() - position_->minimum()) / range;
        Paint::box(&painter, {0, top, qreal(width()), thumb}, radius, Theme::kMark);
    }

 private:
    const QScrollBar* position_;
};

}  // namespace

FingerScroll::FingerScroll(QAbstractScrollArea* area)
    : QObject(area),
      area_(area),
      indicator_(new Indicator(area->verticalScrollBar(), area)),
      indicatorMargin_(kIndicatorMargin) {
    area->setFrameShape(QFrame::NoFrame);
    area->setFocusPolicy(Qt::NoFocus);
    area->setHorizontalScrollBarPolicy(Qt::ScrollBarAlwaysOff);
    area->setVerticalScrollBarPolicy(Qt::ScrollBarAlwaysOff);
    area->installEventFilter(this);
    watch(area->viewport());
    const QScrollBar* bar = area->verticalScrollBar();
    connect(bar, &QScrollBar::rangeChanged, this, &FingerScroll::placeIndicator);
    connect(bar, &QScrollBar::valueChanged, indicator_, qOverload<>(&QWidget::update));
}

FingerScroll::~FingerScroll() = default;

void FingerScroll::setIndicatorMargin(int margin) {
    indicatorMargin_ = margin;
    placeIndicator();
}

void FingerScroll::setCoveredHeight(int height) {
    covered_ = height;
    placeIndicator();
}

void FingerScroll::stop() {
    frames_.stop();
    endTouch();
}

void FingerScroll::cancelTouch() {
    takeBack();
    endTouch();
}

/// Every widget in the area is watched, as the touches go to the one below the finger.
void FingerScroll::watch(QWidget* watched) {
    watched->installEventFilter(this);
    const QList<QWidget*> children = watched->findChildren<QWidget*>();
    for (QWidget* child : children)
        child->installEventFilter(this);
}

bool FingerScroll::eventFilter(QObject* watched, QEvent* event) {
    const bool isArea = watched == area_;
    switch (event->type()) {
        case QEvent::Hide:
            if (isArea)
                stop();
            break;
        case QEvent::Resize:
        case QEvent::Show:
            if (isArea)
                placeIndicator();
            break;
        case QEvent::ChildAdded: {
            QObject* child = static_cast<QChildEvent*>(event)->child();
            if (!isArea && child->isWidgetType())
                watch(static_cast<QWidget*>(child));
            break;
        }
        case QEvent::MouseButtonPress:
        case QEvent::MouseButtonDblClick:
            if (!isArea && !handingOver_)
                return touchDown(static_cast<QWidget*>(watched), static_cast<QMouseEvent*>(event));
            break;
        case QEvent::MouseMove:
            return !isArea && touchMove(static_cast<QMouseEvent*>(event));
        case QEvent::MouseButtonRelease:
            if (!isArea && !handingOver_)
                return touchUp(static_cast<QMouseEvent*>(event));
            break;
        default:
            break;
    }
    return QObject::eventFilter(watched, event);
}

bool FingerScroll::touchDown(QWidget* target, QMouseEvent* event) {
    if (event->button() != Qt::LeftButton || touch_ != Touch::None ||
        area_->verticalScrollBar()->maximum() == 0)
        return false;
    target_ = target;
    press_ = std::make_unique<QMouseEvent>(*event);
    samples_ = {{event->timestamp(), event->globalY()}};
    startValue_ = area_->verticalScrollBar()->value();
    if (frames_.isActive()) {
        frames_.stop();
        touch_ = Touch::Stopping;
    } else {
        touch_ = Touch::Held;
        hold_.start(kHoldMs, this);
    }
    return true;
}

bool FingerScroll::touchMove(const QMouseEvent* event) {
    if (touch_ == Touch::None)
        return false;
    const int moved = event->globalY() - press_->globalY();
    if (touch_ != Touch::Scrolling) {
        if (qAbs(moved) < kScrollAfter)
            return touch_ != Touch::Below;
        beginScroll();
    }
    samples_.append({event->timestamp(), event->globalY()});
    while (samples_.last().time - samples_.first().time > kSpeedMs)
        samples_.removeFirst();
    area_->verticalScrollBar()->setValue(startValue_ - moved);
    return true;
}

void FingerScroll::beginScroll() {
    hold_.stop();
    if (touch_ == Touch::Below)
        takeBack();
    touch_ = Touch::Scrolling;
}

/// Takes the press back from what is below.
void FingerScroll::takeBack() {
    for (QWidget* widget = target_; widget != nullptr && widget != area_;
         widget = widget->parentWidget())
        if (auto* button = qobject_cast<WidgetButton*>(widget))
            button->cancelTouch();
    emit touchTaken();
}

bool FingerScroll::touchUp(const QMouseEvent* event) {
    const Touch touch = touch_;
    if (touch == Touch::Held)
        handOver();
    const double speed = touch == Touch::Scrolling ? speedAt(event->timestamp()) : 0;
    endTouch();
    if (qAbs(speed) >= kSlowest)
        throwContent(-speed);
    return touch == Touch::Scrolling || touch == Touch::Stopping;
}

/// Gives what is below the press that was held back.
void FingerScroll::handOver() {
    if (!target_)
        return;
    handingOver_ = true;
    QCoreApplication::sendEvent(target_, press_.get());
    handingOver_ = false;
}

void FingerScroll::endTouch() {
    hold_.stop();
    touch_ = Touch::None;
    target_.clear();
    press_.reset();
}

double FingerScroll::speedAt(ulong time) const {
    const Sample& first = samples_.first();
    const Sample& last = samples_.last();
    // A finger that has come to rest throws nothing.
    if (time - last.time > kSpeedMs || last.time == first.time)
        return 0;
    return 1000.0 * (last.y - first.y) / static_cast<double>(last.time - first.time);
}

void FingerScroll::throwContent(double speed) {
    speed_ = qBound(-kFastest, speed, kFastest);
    startValue_ = area_->verticalScrollBar()->value();
    thrown_.start();
    frames_.start(kFrameMs, Qt::PreciseTimer, this);
}

void FingerScroll::moveThrown() {
    // By the time and not by the frame: a late one makes up for it.
    const double last = qAbs(speed_) / kSlowDown;
    const double time = qMin(thrown_.nsecsElapsed() / 1e9, last);
    const double way = qAbs(speed_) * time - kSlowDown * time * time / 2;
    const int value = startValue_ + qRound(speed_ < 0 ? -way : way);
    QScrollBar* bar = area_->verticalScrollBar();
    bar->setValue(value);
    // A list that fetches more goes on; at its end there is nothing more to be thrown at.
    if (time >= last || bar->value() != value)
        frames_.stop();
}

void FingerScroll::timerEvent(QTimerEvent* event) {
    if (event->timerId() == frames_.timerId()) {
        moveThrown();
    } else if (event->timerId() == hold_.timerId()) {
        hold_.stop();
        touch_ = Touch::Below;
        handOver();
    } else {
        QObject::timerEvent(event);
    }
}

void FingerScroll::placeIndicator() {
    indicator_->setGeometry(area_->width() - indicatorMargin_ - kIndicatorWidth, kIndicatorInset,
                            kIndicatorWidth, area_->height() - covered_ - 2 * kIndicatorInset);
    indicator_->setVisible(area_->verticalScrollBar()->maximum() > 0);
    indicator_->raise();
    indicator_->update();
}
