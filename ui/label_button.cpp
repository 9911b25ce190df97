#include "ui/label_button.h"

#include <QPainter>

#include "ui/paint.h"
#include "ui/pictures.h"
#include "ui/theme.h"

namespace {

constexpr int kPadding = 18;
constexpr int kIconGap = 8;
// Stacked: where the icon and the text have their place, from the top.
constexpr int kStackedIconTop = 11;
constexpr int kStackedTextTop = 53;
constexpr int kStackedTextHeight = 34;
constexpr int kStackedSide = 4;
constexpr int kSmallHeight = 64;  // lower buttons have the smaller text

}  // namespace

LabelButton::LabelButton(QWidget* parent) : WidgetButton(parent) {
    setObjectName(QStringLiteral("LabelButton"));
}

void LabelButton::setText(const QString& text) {
    text_.setText(text);
    updateGeometry();
    update();
}

void LabelButton::setScript(const ScriptHandler::Script& script) {
    text_.setEntry(script);
    updateGeometry();
    update();
}

void LabelButton::setIconName(const QString& name) {
    icon_ = name;
    updateGeometry();
    update();
}

void LabelButton::setRole(Role role) {
    role_ = role;
    update();
}

void LabelButton::setMargin(int margin) {
    margin_ = margin;
    update();
}

void LabelButton::setLimited(bool limited) {
    if (limited_ == limited)
        return;
    limited_ = limited;
    update();
}

void LabelButton::setStacked(bool stacked) {
    stacked_ = stacked;
    update();
}

void LabelButton::applyScripts(const Lookup& lookup) {
    text_.apply(lookup);
    updateGeometry();
    update();
}

QSize LabelButton::sizeHint() const {
    int width = 2 * kPadding;
    if (!icon_.isEmpty())
        width += Pictures::icon(icon_).width() + (text_.isEmpty() ? 0 : kIconGap);
    if (!text_.isEmpty())
        // Off or not, so that no other button moves with it.
        width += TextFit::width(text_.entry(), rule(), isBold() ? QFont::Bold : QFont::Medium);
    return {width, 72};
}

const TextFit::Rule& LabelButton::rule() const {
    return drawn().height() < kSmallHeight ? TextFit::kSmallButton : TextFit::kButton;
}

bool LabelButton::isBold() const {
    return (role_ != Neutral && role_ != Flat) || isSelected();
}

QFont::Weight LabelButton::weight() const {
    return isBold() && !looksOff() ? QFont::Bold : QFont::Medium;
}

QRgb LabelButton::inkColor() const {
    if (looksOff())
        return Theme::kOff;
    switch (role_) {
        case Primary:
            return Theme::kOnAccent;
        case Danger:
            return Theme::kOnDanger;
        case Delete:
            return Theme::kDanger;
        case Neutral:
        case Flat:
            break;
    }
    return isSelected() ? Theme::kAccent : Theme::kCaption;
}

void LabelButton::paintEvent(QPaintEvent*) {
    QPainter painter(this);
    const QRect box = drawn();
    if (role_ == Flat) {
        if (isDown())
            Paint::box(&painter, box, Theme::kRadiusControl, Theme::kRowPressed);
    } else if (looksOff()) {
        // Without a word to read, a thin line keeps its shape visible.
        if (text_.isEmpty())
            Paint::box(&painter, box, Theme::kRadiusControl, Theme::kRow, Theme::kLine, 1);
        else
            Paint::box(&painter, box, Theme::kRadiusControl, Theme::kRow);
    } else if (role_ == Primary) {
        Paint::box(&painter, box, Theme::kRadiusControl,
                   isDown() ? Theme::kAccentPressed : Theme::kAccent);
    } else if (role_ == Danger) {
        Paint::box(&painter, box, Theme::kRadiusControl,
                   isDown() ? Theme::kDangerPressed : Theme::kDanger);
    } else if (isSelected()) {
        Paint::box(&painter, box, Theme::kRadiusControl, Theme::kAccentTint, Theme::kAccent, 2);
    } else {
        Paint::box(&painter, box, Theme::kRadiusControl,
                   isDown() ? Theme::kPressed : Theme::kRaised);
    }

    const QRgb ink = inkColor();
    if (text_.isEmpty()) {
        Paint::glyph(&painter, box, icon_, ink);
        return;
    }
    if (stacked_) {
        Paint::glyph(
            &painter,
            {box.x(), box.y() + kStackedIconTop, box.width(), Pictures::icon(icon_).height()},
            icon_, ink);
        TextFit::draw(&painter,
                      {box.x() + kStackedSide, box.y() + kStackedTextTop,
                       box.width() - 2 * kStackedSide, kStackedTextHeight},
                      Qt::AlignHCenter, text_.entry(), TextFit::kCaption, weight(), ink);
        return;
    }
    QRect line = box.adjusted(kPadding / 2, 0, -kPadding / 2, 0);
    if (icon_.isEmpty()) {
        TextFit::draw(&painter, line, Qt::AlignHCenter, text_.entry(), rule(), weight(), ink);
        return;
    }
    const int iconWidth = Pictures::icon(icon_).width();
    const int textWidth =
        qMin(TextFit::width(text_.entry(), rule(), weight()), line.width() - iconWidth - kIconGap);
    line.setLeft(box.x() + (box.width() - iconWidth - kIconGap - textWidth) / 2);
    Paint::glyph(&painter, {line.x(), line.y(), iconWidth, line.height()}, icon_, ink);
    line.setLeft(line.x() + iconWidth + kIconGap);
    line.setWidth(textWidth);
    TextFit::draw(&painter, line, Qt::AlignLeft, text_.entry(), rule(), weight(), ink);
}
