#include "ui/chip.h"

#include <QPainter>

#include "ui/paint.h"
#include "ui/text_fit.h"
#include "ui/theme.h"

namespace {

constexpr int kLeft = 12;
constexpr int kRight = 16;
constexpr int kIcon = 24;
constexpr int kGap = 8;

}  // namespace

Chip::Chip(QWidget* parent) : QWidget(parent) {
    setObjectName(QStringLiteral("Chip"));
}

void Chip::setText(const QString& text) {
    text_.setText(text);
    updateGeometry();
    update();
}

void Chip::setIconName(const QString& name) {
    icon_ = name;
    updateGeometry();
    update();
}

void Chip::applyScripts(const Lookup& lookup) {
    text_.apply(lookup);
    updateGeometry();
    update();
}

QSize Chip::sizeHint() const {
    const int left = icon_.isEmpty() ? kRight : kLeft + kIcon + kGap;
    return {left + TextFit::width(text_.entry(), TextFit::kChip, QFont::Medium) + kRight, 40};
}

void Chip::paintEvent(QPaintEvent*) {
    QPainter painter(this);
    const QRect pill(0, 0, qMin(width(), sizeHint().width()), height());
    Paint::box(&painter, pill, height() / 2.0, Theme::kAccentTint);
    int left = kRight;
    if (!icon_.isEmpty()) {
        Paint::glyph(&painter, {kLeft, 0, kIcon, height()}, icon_, Theme::kAccent, kIcon);
        left = kLeft + kIcon + kGap;
    }
    TextFit::draw(&painter, {left, 0, pill.width() - left - kRight, height()}, Qt::AlignLeft,
                  text_.entry(), TextFit::kChip, QFont::Medium, Theme::kAccent);
}
