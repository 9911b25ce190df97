#include "ui/dialog_overlay.h"

#include <QEvent>
#include <QKeyEvent>
#include <QPainter>
#include <QVector>

#include "ui/theme.h"
#include "ui/touch_key_form.h"
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

/// The dialogs that are visible, so that nobody has to search all the widgets of all screens for
/// one whenever the screen changes.
QVector<DialogOverlay*>& shown() {
    static QVector<DialogOverlay*> dialogs;
    return dialogs;
}

DialogOverlay* visibleDialog(const QWidget* widget, const DialogOverlay* except) {
    for (DialogOverlay* dialog : qAsConst(shown()))
        if (dialog != except && dialog->window() == widget->window())
            return dialog;
    return nullptr;
}

}  // namespace

DialogOverlay::DialogOverlay(QWidget* parent) : QWidget(parent), card_(new Card(this)) {
    hide();
    setAttribute(Qt::WA_NoMousePropagation);
    setFocusPolicy(Qt::StrongFocus);
    parent->installEventFilter(this);
}

DialogOverlay::~DialogOverlay() {
    shown().removeOne(this);
}

DialogOverlay* DialogOverlay::current(const QWidget* widget) {
    return visibleDialog(widget, nullptr);
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
    if (watched == parent() && event->type() == QEvent::Resize)
        resize(parentWidget()->size());
    return QWidget::eventFilter(watched, event);
}

bool DialogOverlay::focusNextPrevChild(bool) {
    return true;  // the focus must not leave for what is behind
}

void DialogOverlay::hideEvent(QHideEvent* event) {
    if (!event->spontaneous()) {
        shown().removeOne(this);
        // Hidden along with its screen: it must not come back with the screen.
        if (!isHidden())
            hide();
        if (focusBefore_ && focusBefore_->isVisible())
            focusBefore_->setFocus();
        focusBefore_.clear();
        if (deleteOnClose_)
            deleteLater();
    }
    QWidget::hideEvent(event);
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
    shown().append(this);
    if (DialogOverlay* other = visibleDialog(this, this)) {
        other->hide();
        other->replaced();
        if (!isVisible())
            return;
    }
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
    if (backgroundDisabled_) {
        // A finger that lies on something behind must not set it off when it is lifted.
        const auto buttons = window()->findChildren<WidgetButton*>();
        for (WidgetButton* button : buttons)
            button->cancelTouch();
        focusBefore_ = window()->focusWidget();
        setFocus();
    }
}
