#include "ui/dialog_overlay.h"

#include <QEvent>
#include <QKeyEvent>
#include <QPainter>
#include <utility>

#include "ui/finger_scroll.h"
#include "ui/theme.h"
#include "ui/touch_key_form.h"
#include "ui/touch_shield.h"
#include "ui/widget_button.h"

namespace {

class Card : public QWidget {
 public:
    using QWidget::QWidget;

 protected:
    void paintEvent(QPaintEvent*) override {
        QPainter painter(this);
        painter.setRenderHint(QPainter::Antialiasing);
        painter.setPen(Theme::color(Theme::kOutline));
        painter.setBrush(Theme::color(Theme::kDialog));
        painter.drawRoundedRect(QRectF(rect()).adjusted(0.5, 0.5, -0.5, -0.5), Theme::kRadiusCard,
                                Theme::kRadiusCard);
    }
};

}  // namespace

DialogOverlay::DialogOverlay(QWidget* parent, DialogRank rank)
    : QWidget(parent), rank_(rank), card_(new Card(this)), shield_(new TouchShield(this)) {
    QWidget::setVisible(false);
    setAttribute(Qt::WA_NoMousePropagation);
    setFocusPolicy(Qt::StrongFocus);
    parent->installEventFilter(this);
}

DialogOverlay::~DialogOverlay() {
    if (!DialogStack::instance().close(this))
        return;
    // The window may be about to go as well.
    QWidget* whole = window();
    QMetaObject::invokeMethod(
        whole, [whole] { settle(whole); }, Qt::QueuedConnection);
}

DialogOverlay* DialogOverlay::current(const QWidget* widget) {
    return DialogStack::instance().top(widget);
}

void DialogOverlay::closeAll(const QWidget* widget) {
    const QVector<DialogOverlay*> open = DialogStack::instance().all(widget);
    for (DialogOverlay* dialog : open)
        dialog->hide();
}

void DialogOverlay::coverWith(const QWidget* window, QWidget* screen) {
    DialogStack::instance().coverWith(screen);
    settle(window);
}

bool DialogOverlay::isOpen() const {
    return DialogStack::instance().contains(this);
}

void DialogOverlay::setVisible(bool visible) {
    DialogStack& stack = DialogStack::instance();
    if (visible == stack.contains(this))
        return;
    if (visible) {
        stack.open(this);
        opened();
        settle(this);
        return;
    }
    stack.close(this);
    QWidget::setVisible(false);
    closed();
    settle(this);
    if (deleteOnClose_)
        deleteLater();
}

void DialogOverlay::settle(const QWidget* window) {
    const DialogStack& stack = DialogStack::instance();
    DialogOverlay* top = stack.top(window);
    const QVector<DialogOverlay*> open = stack.all(window);
    for (DialogOverlay* dialog : open) {
        if (dialog != top && !dialog->isHidden())
            dialog->QWidget::setVisible(false);
    }
    if (top != nullptr)
        top->QWidget::setVisible(true);
}

void DialogOverlay::setBackgroundDisabled(bool on) {
    backgroundDisabled_ = on;
    partsChanged();
}

void DialogOverlay::windowChanged() {
    if (followsWindowChange_)
        hide();
}

void DialogOverlay::partsChanged() {
    if (!isVisible())
        return;  // showEvent() arranges
    const int height = arrange();
    card_->setGeometry((width() - kCardWidth) / 2, (this->height() - height) / 2, kCardWidth,
                       height);
    if (backgroundDisabled_)
        clearMask();
    else
        setMask(card_->geometry());
    update();
}

bool DialogOverlay::eventFilter(QObject* watched, QEvent* event) {
    if (watched == parent()) {
        if (event->type() == QEvent::Resize)
            resize(parentWidget()->size());
        else if (event->type() == QEvent::Hide && !event->spontaneous())
            hide();
        else if (event->type() == QEvent::Show && isOpen())
            settle(this);
    }
    return QWidget::eventFilter(watched, event);
}

bool DialogOverlay::focusNextPrevChild(bool) {
    return true;  // the focus must not leave for what is behind
}

void DialogOverlay::hideEvent(QHideEvent* event) {
    if (!event->spontaneous()) {
        if (focusBefore_ && focusBefore_->isVisible())
            focusBefore_->setFocus();
        focusBefore_.clear();
    }
    QWidget::hideEvent(event);
}

void DialogOverlay::takeTouchesAtOnce() {
    delete std::exchange(shield_, nullptr);
}

void DialogOverlay::keyPressEvent(QKeyEvent* event) {
    event->accept();
}

void DialogOverlay::keyReleaseEvent(QKeyEvent* event) {
    event->accept();
}

void DialogOverlay::paintEvent(QPaintEvent*) {
    if (backgroundDisabled_)
        QPainter(this).fillRect(rect(), Theme::color(Theme::kDim));
}

void DialogOverlay::resizeEvent(QResizeEvent*) {
    partsChanged();
}

void DialogOverlay::showEvent(QShowEvent* event) {
    QWidget::showEvent(event);
    if (event->spontaneous())
        return;
    if (parentWidget() != window()) {
        // The keypad would lie on a screen's dialog.
        const auto keypads =
            window()->findChildren<TouchKeyForm*>(QString(), Qt::FindDirectChildrenOnly);
        for (TouchKeyForm* keypad : keypads)
            keypad->hide();
    }
    setGeometry(parentWidget()->rect());
    partsChanged();
    raise();
    if (shield_ != nullptr)
        shield_->raiseShield();
    if (backgroundDisabled_) {
        // A finger that lies on something behind must not set it off when it is lifted.
        const auto buttons = window()->findChildren<WidgetButton*>();
        for (WidgetButton* button : buttons)
            button->cancelTouch();
        const auto lists = window()->findChildren<FingerScroll*>();
        for (FingerScroll* list : lists)
            list->cancelTouch();
        focusBefore_ = window()->focusWidget();
        setFocus();
    }
}
