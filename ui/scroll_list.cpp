#include "ui/scroll_list.h"

#include <QChildEvent>
#include <QCoreApplication>
#include <QPainter>
#include <QScrollBar>

#include "ui/paint.h"
#include "ui/theme.h"
#include "ui/widget_button.h"

namespace {

constexpr int kScrollAfter = 12;  // pixels; less is the finger's trembling
constexpr int kHoldMs = 70;

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

ScrollList::ScrollList(QWidget* parent)
    : QScrollArea(parent),
      indicator_(new Indicator(verticalScrollBar(), this)),
      indicatorMargin_(kIndicatorMargin) {
    setObjectName(QStringLiteral("ScrollList"));
    setFrameShape(NoFrame);
    setFocusPolicy(Qt::NoFocus);
    setHorizontalScrollBarPolicy(Qt::ScrollBarAlwaysOff);
    setVerticalScrollBarPolicy(Qt::ScrollBarAlwaysOff);
    setGround(Theme::kBackground);
    const QScrollBar* bar = verticalScrollBar();
    connect(bar, &QScrollBar::rangeChanged, this, &ScrollList::placeIndicator);
    connect(bar, &QScrollBar::valueChanged, indicator_, qOverload<>(&QWidget::update));
    watch(viewport());
}

ScrollList::~ScrollList() = default;

void ScrollList::setGround(QRgb color) {
    QPalette ground = palette();
    ground.setColor(QPalette::Window, Theme::color(color));
    ground.setColor(QPalette::Base, Theme::color(color));
    setPalette(ground);
}

void ScrollList::setIndicatorMargin(int margin) {
    indicatorMargin_ = margin;
    placeIndicator();
}

void ScrollList::setCoveredHeight(int height) {
    setViewportMargins(0, 0, 0, height);
    placeIndicator();
}

void ScrollList::reveal(const QWidget* target) {
    if (!widget() || !widget()->isAncestorOf(target))
        return;
    while (target->parentWidget() != widget())
        target = target->parentWidget();
    const QPoint center = target->geometry().center();
    ensureVisible(center.x(), center.y(), 0, target->height() / 2 + kIndicatorInset);
}

/// Every widget in the list is watched, as the touches go to the one below the finger.
void ScrollList::watch(QWidget* watched) {
    watched->installEventFilter(this);
    const QList<QWidget*> children = watched->findChildren<QWidget*>();
    for (QWidget* child : children)
        child->installEventFilter(this);
}

bool ScrollList::eventFilter(QObject* watched, QEvent* event) {
    switch (event->type()) {
        case QEvent::ChildAdded: {
            QObject* child = static_cast<QChildEvent*>(event)->child();
            if (child->isWidgetType())
                watch(static_cast<QWidget*>(child));
            break;
        }
        case QEvent::MouseButtonPress:
        case QEvent::MouseButtonDblClick:
            if (!handingOver_)
                return touchDown(static_cast<QWidget*>(watched), static_cast<QMouseEvent*>(event));
            break;
        case QEvent::MouseMove:
            return touchMove(static_cast<QMouseEvent*>(event));
        case QEvent::MouseButtonRelease:
            if (!handingOver_)
                return touchUp();
            break;
        default:
            break;
    }
    return QScrollArea::eventFilter(watched, event);
}

bool ScrollList::touchDown(QWidget* target, QMouseEvent* event) {
    if (event->button() != Qt::LeftButton || touch_ != Touch::None ||
        verticalScrollBar()->maximum() == 0)
        return false;
    target_ = target;
    press_ = std::make_unique<QMouseEvent>(*event);
    startValue_ = verticalScrollBar()->value();
    touch_ = Touch::Held;
    hold_.start(kHoldMs, this);
    return true;
}

bool ScrollList::touchMove(const QMouseEvent* event) {
    if (touch_ == Touch::None)
        return false;
    const int moved = event->globalY() - press_->globalY();
    if (touch_ != Touch::Scrolling) {
        if (qAbs(moved) < kScrollAfter)
            return touch_ == Touch::Held;
        hold_.stop();
        if (touch_ == Touch::Row && target_)
            for (QWidget* widget = target_; widget && widget != viewport();
                 widget = widget->parentWidget())
                if (auto* button = qobject_cast<WidgetButton*>(widget))
                    button->cancelTouch();
        touch_ = Touch::Scrolling;
    }
    verticalScrollBar()->setValue(startValue_ - moved);
    return true;
}

bool ScrollList::touchUp() {
    const Touch touch = touch_;
    if (touch == Touch::Held)
        handOver();
    endTouch();
    return touch == Touch::Scrolling;
}

/// Gives the row the press that was held back.
void ScrollList::handOver() {
    if (!target_)
        return;
    handingOver_ = true;
    QCoreApplication::sendEvent(target_, press_.get());
    handingOver_ = false;
}

void ScrollList::endTouch() {
    hold_.stop();
    touch_ = Touch::None;
    target_.clear();
    press_.reset();
}

void ScrollList::timerEvent(QTimerEvent* event) {
    if (event->timerId() != hold_.timerId()) {
        QScrollArea::timerEvent(event);
        return;
    }
    hold_.stop();
    touch_ = Touch::Row;
    handOver();
}

void ScrollList::resizeEvent(QResizeEvent* event) {
    QScrollArea::resizeEvent(event);
    placeIndicator();
}

void ScrollList::hideEvent(QHideEvent* event) {
    endTouch();
    QScrollArea::hideEvent(event);
}

void ScrollList::placeIndicator() {
    const int covered = viewportMargins().bottom();
    indicator_->setGeometry(width() - indicatorMargin_ - kIndicatorWidth, kIndicatorInset,
                            kIndicatorWidth, height() - covered - 2 * kIndicatorInset);
    indicator_->setVisible(verticalScrollBar()->maximum() > 0);
    indicator_->raise();
    indicator_->update();
}
