#include "ui/dialog_form.h"

#include <QLabel>
#include <QPointer>

#include "ui/label_button.h"
#include "ui/pictures.h"

namespace {

constexpr int kButtonsGap = 28;
constexpr int kButtonHeight = 72;
constexpr int kBetweenButtons = 12;

}  // namespace

DialogForm::DialogForm(QWidget* parent, int autoCloseMs, DialogRank rank)
    : MessageOverlay(parent, rank),
      icon_(new QLabel(card())),
      ok_(new LabelButton(card())),
      cancel_(new LabelButton(card())),
      okKey_(QStringLiteral("TopMenu_OK")),
      cancelKey_(QStringLiteral("TopMenu_Cancel")) {
    // A label without a size of its own asks the default font for one, which would be loaded.
    icon_->resize(card()->size());
    icon_->hide();
    ok_->setObjectName(QStringLiteral("dialogOkButton"));
    cancel_->setObjectName(QStringLiteral("dialogCancelButton"));
    setDanger(false);
    setButtonType(OkButton);
    setAutoClose(autoCloseMs);
    autoClose_.setParent(this);
    autoClose_.setObjectName(QStringLiteral("autoCloseTimer"));
    autoClose_.setSingleShot(true);
    okDelay_.setSingleShot(true);
    connect(&okDelay_, &QTimer::timeout, this, [this] { ok_->setEnabled(true); });

    connect(ok_, &LabelButton::touched, this, [this] {
        hide();
        emit touchOk();
    });
    connect(cancel_, &LabelButton::touched, this, [this] {
        hide();
        const QPointer<DialogForm> alive(this);
        emit touchCancel();
        if (alive)
            emit closePopup();
    });
    connect(&autoClose_, &QTimer::timeout, this, [this] {
        hide();
        emit closePopup();
    });
}

void DialogForm::setAutoClose(int ms) {
    autoClose_.setInterval(ms);
}

void DialogForm::setOkDelay(int ms) {
    okDelay_.setInterval(ms);
    ok_->setEnabled(ms == 0);
}

void DialogForm::setButtonType(int flags) {
    ok_->setVisible(flags & OkButton);
    cancel_->setVisible(flags & CancelButton);
    partsChanged();
}

void DialogForm::setIcon(Icon icon) {
    static const char* const names[] = {"", "error", "info", "pass", "question", "warning"};
    icon_->setVisible(icon != Icon::None);
    icon_->clear();
    iconName_ = QLatin1String(names[static_cast<int>(icon)]);
    partsChanged();
}

void DialogForm::setOkKey(const QString& key) {
    okKey_ = key;
    MessageOverlay::applyScripts();
}

void DialogForm::setCancelKey(const QString& key) {
    cancelKey_ = key;
    MessageOverlay::applyScripts();
}

void DialogForm::setDanger(bool on) {
    ok_->setRole(on ? LabelButton::Danger : LabelButton::Primary);
}

void DialogForm::applyScripts(const Lookup& lookup) {
    MessageOverlay::applyScripts(lookup);
    if (!okKey_.isEmpty())
        ok_->setScript(TextFit::roleSized(lookup(okKey_)));
    if (!cancelKey_.isEmpty())
        cancel_->setScript(TextFit::roleSized(lookup(cancelKey_)));
}

int DialogForm::arrange() {
    // Read when it is to be seen; most dialogs never are.
    if (!icon_->isHidden() && icon_->pixmap(Qt::ReturnByValue).isNull())
        icon_->setPixmap(Pictures::icon(iconName_ + QLatin1String(".png")));
    int y = arrangeMessage(icon_);
    if (!ok_->isHidden() || !cancel_->isHidden()) {
        y += kButtonsGap;
        const bool two = !ok_->isHidden() && !cancel_->isHidden();
        const int width = two ? (kInnerWidth - kBetweenButtons) / 2 : kInnerWidth;
        cancel_->setGeometry(kSide, y, width, kButtonHeight);
        ok_->setGeometry(kSide + kInnerWidth - width, y, width, kButtonHeight);
        y += kButtonHeight;
    }
    return y + kBottom;
}

void DialogForm::opened() {
    MessageOverlay::opened();
    if (passing_ && autoClose_.interval() > 0)
        autoClose_.start();
}

void DialogForm::closed() {
    autoClose_.stop();
}

void DialogForm::hideEvent(QHideEvent* event) {
    if (!passing_)
        autoClose_.stop();
    okDelay_.stop();
    MessageOverlay::hideEvent(event);
}

void DialogForm::showEvent(QShowEvent* event) {
    MessageOverlay::showEvent(event);
    if (!ok_->isEnabled())
        okDelay_.start();
    if (autoClose_.interval() > 0 && !autoClose_.isActive())
        autoClose_.start();
}
