#include "ui/touch_key.h"

#include <QPainter>

#include "ui/paint.h"
#include "ui/text_fit.h"
#include "ui/theme.h"

namespace {

constexpr int kDigitSize = 34;
constexpr int kLetterSize = 28;
constexpr TextFit::Rule kWord{{{22, 1}, {18, 1}}};

}  // namespace

TouchKey::TouchKey(QWidget* parent, Look look) : WidgetButton(parent), look_(look) {}

void TouchKey::setLook(Look look) {
    look_ = look;
    update();
}

void TouchKey::setText(const QString& text) {
    text_.script = text;
    update();
}

void TouchKey::setFamily(const QString& family) {
    text_.fontFamily = family;
    update();
}

void TouchKey::setScript(const ScriptHandler::Script& script) {
    text_ = script;
    update();
}

void TouchKey::setPicture(const QString& name) {
    picture_ = name;
    update();
}

void TouchKey::place(const QRect& drawn, const QRect& sensitive) {
    setGeometry(sensitive);
    drawn_ = drawn.translated(-sensitive.topLeft());
    update();
}

void TouchKey::paintEvent(QPaintEvent*) {
    QPainter painter(this);
    QRgb ink = look_ == Function ? Theme::kCaption : Theme::kStrong;
    if (look_ == Primary) {
        Paint::box(&painter, drawn_, Theme::kRadiusControl,
                   isDown() ? Theme::kAccentPressed : Theme::kAccent);
        ink = Theme::kOnAccent;
    } else if (isDown()) {
        Paint::box(&painter, drawn_, Theme::kRadiusControl, Theme::kPressed);
    } else if (isSelected()) {
        Paint::box(&painter, drawn_, Theme::kRadiusControl, Theme::kAccentTint, Theme::kAccent, 2);
        ink = Theme::kAccent;
    } else if (look_ == Function) {
        Paint::box(&painter, drawn_, Theme::kRadiusControl, Theme::kRow, Theme::kOffLine, 1);
    } else {
        Paint::box(&painter, drawn_, Theme::kRadiusControl, Theme::kRaised);
    }

    if (!picture_.isEmpty()) {
        Paint::glyph(&painter, drawn_, picture_, ink);
    } else if (look_ == Digit || look_ == Letter) {
        // A single character may be one that means markup in a text.
        painter.setFont(Theme::font(text_.fontFamily, look_ == Digit ? kDigitSize : kLetterSize,
                                    QFont::Medium));
        painter.setPen(Theme::color(ink));
        painter.drawText(drawn_.adjusted(0, 0, 0, -2), Qt::AlignCenter, text_.script);
    } else {
        TextFit::draw(&painter, drawn_.adjusted(4, 0, -4, 0), Qt::AlignHCenter, text_, kWord,
                      look_ == Primary ? QFont::Bold : QFont::Medium, ink);
    }
}
