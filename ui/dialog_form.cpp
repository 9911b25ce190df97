#include "ui/dialog_form.h"

#include <QAbstractButton>
#include <QLabel>
#include <QPainter>

#include "ui/key_click.h"
#include "ui/pictures.h"
#include "ui/styler.h"
#include "ui/theme.h"

namespace {

constexpr int kIconSize = 72;
constexpr int kIconGap = 20;
constexpr int kSecondTextGap = 8;
constexpr int kButtonsGap = 28;
constexpr int kButtonHeight = 72;
constexpr int kBetweenButtons = 12;

class DialogButton : public QAbstractButton {
 public:
    enum Role { Neutral, Primary, Danger };
    DialogButton(QWidget* parent, Role role) : QAbstractButton(parent), role_(role) {
        setFocusPolicy(Qt::NoFocus);
        connect(this, &QAbstractButton::pressed, [] { KeyClick::send(); });
    }
    void setRole(Role role) {
        role_ = role;
        update();
    }

 protected:
    void paintEvent(QPaintEvent*) override {
        const struct {
            QRgb normal, pressed, text;
        } looks[] = {{Theme::kRaised, Theme::kPressed, Theme::kCaption},
                     {Theme::kAccent, Theme::kAccentPressed, Theme::kOnAccent},
                     {Theme::kDanger, Theme::kDangerPressed, Theme::kOnDanger}};
        const auto& look = looks[role_];
        QPainter painter(this);
        painter.setRenderHint(QPainter::Antialiasing);
        painter.setPen(Qt::NoPen);
        painter.setBrush(Theme::color(isDown() ? look.pressed : look.normal));
        painter.drawRoundedRect(rect(), Theme::kRadiusControl, Theme::kRadiusControl);
        painter.setPen(Theme::color(look.text));
        painter.drawText(rect().adjusted(0, 0, 0, -2), Qt::AlignCenter, text());
    }

 private:
    Role role_;
};

void setButtonText(QAbstractButton* button, const ScriptHandler::Script& script) {
    button->setFont(Theme::font(script.fontFamily, static_cast<int>(script.size), QFont::Bold));
    button->setText(script.script);
}

QLabel* makeLine(QWidget* card, QFont::Weight weight, QRgb color) {
    auto* label = new QLabel(card);
    label->setAlignment(Qt::AlignCenter);
    label->setWordWrap(true);
    QFont font = label->font();
    font.setWeight(weight);
    label->setFont(font);
    QPalette palette = label->palette();
    palette.setColor(QPalette::WindowText, Theme::color(color));
    label->setPalette(palette);
    label->hide();
    return label;
}

void setLine(QLabel* label, ScriptHandler::Script script) {
    script.script.replace(QLatin1Char('\n'), QLatin1String("<br>"));
    Styler::setText(label, script);
    label->setVisible(!script.script.isEmpty());
}

}  // namespace

DialogForm::DialogForm(QWidget* parent, int autoCloseMs)
    : DialogOverlay(parent),
      icon_(new QLabel(card())),
      text_(makeLine(card(), QFont::Medium, Theme::kStrong)),
      secondText_(makeLine(card(), QFont::Normal, Theme::kList)),
      ok_(new DialogButton(card(), DialogButton::Primary)),
      cancel_(new DialogButton(card(), DialogButton::Neutral)) {
    icon_->hide();
    ok_->setObjectName(QStringLiteral("dialogOkButton"));
    cancel_->setObjectName(QStringLiteral("dialogCancelButton"));
    setButtonType(OkButton);
    setAutoClose(autoCloseMs);
    autoClose_.setSingleShot(true);

    connect(ok_, &QAbstractButton::clicked, this, [this] {
        hide();
        emit touchOk();
    });
    connect(cancel_, &QAbstractButton::clicked, this, [this] {
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

void DialogForm::setButtonType(int flags) {
    ok_->setVisible(flags & OkButton);
    cancel_->setVisible(flags & CancelButton);
    partsChanged();
}

void DialogForm::setIcon(Icon icon) {
    static const char* const names[] = {"", "error", "info", "pass", "question", "warning"};
    icon_->setVisible(icon != Icon::None);
    if (icon != Icon::None)
        icon_->setPixmap(
            Pictures::icon(QLatin1String(names[static_cast<int>(icon)]) + QLatin1String(".png")));
    partsChanged();
}

void DialogForm::setText(const ScriptHandler::Script& script) {
    setLine(text_, script);
    partsChanged();
}

void DialogForm::setSecondText(const ScriptHandler::Script& script) {
    setLine(secondText_, script);
    partsChanged();
}

void DialogForm::setOkText(const ScriptHandler::Script& script) {
    setButtonText(ok_, script);
}

void DialogForm::setCancelText(const ScriptHandler::Script& script) {
    setButtonText(cancel_, script);
}

void DialogForm::setDanger(bool on) {
    static_cast<DialogButton*>(ok_)->setRole(on ? DialogButton::Danger : DialogButton::Primary);
}

int DialogForm::arrange() {
    int y = kTop;
    if (!icon_->isHidden()) {
        icon_->setGeometry((kCardWidth - kIconSize) / 2, y, kIconSize, kIconSize);
        y += kIconSize + kIconGap;
    }
    for (QLabel* line : {text_, secondText_}) {
        if (line->isHidden())
            continue;
        if (line == secondText_)
            y += kSecondTextGap;
        const int height = line->heightForWidth(kInnerWidth);
        line->setGeometry(kSide, y, kInnerWidth, height);
        y += height;
    }
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

void DialogForm::hideEvent(QHideEvent* event) {
    autoClose_.stop();
    DialogOverlay::hideEvent(event);
}

void DialogForm::replaced() {
    emit closePopup();
}

void DialogForm::showEvent(QShowEvent* event) {
    DialogOverlay::showEvent(event);
    if (isVisible() && autoClose_.interval() > 0)
        autoClose_.start();
}
