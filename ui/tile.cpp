#include "ui/tile.h"

#include <QPainter>

#include "ui/paint.h"
#include "ui/text_fit.h"
#include "ui/theme.h"

namespace {

constexpr int kPlate = 64;
constexpr int kMargin = 16;
constexpr int kTextTop = 84;
constexpr int kTextHeight = 64;
constexpr int kSide = 8;
constexpr int kWideIcon = 38;
constexpr int kWideTextLeft = 68;

}  // namespace

Tile::Tile(QWidget* parent) : WidgetButton(parent) {
    setObjectName(QStringLiteral("Tile"));
}

void Tile::setIconName(const QString& name) {
    icon_ = name;
    update();
}

void Tile::setWide(bool wide) {
    wide_ = wide;
    updateGeometry();
    update();
}

void Tile::applyScripts(const Lookup& lookup) {
    text_.apply(lookup);
    update();
}

QSize Tile::sizeHint() const {
    return wide_ ? QSize(220, 94) : QSize(208, 156);
}

void Tile::paintEvent(QPaintEvent*) {
    QPainter painter(this);
    drawRow(&painter, rect(), wide_ ? Theme::kRadiusControl : Theme::kRadiusCard);
    const bool chosen = isSelected() && isEnabled();
    const QRgb ink = !isEnabled() ? Theme::kOff : chosen ? Theme::kAccent : Theme::kCaption;
    const QFont::Weight weight = chosen ? QFont::Bold : QFont::Medium;
    if (wide_) {
        Paint::glyph(&painter, {kMargin, 0, kWideIcon, height()}, icon_, ink);
        TextFit::draw(&painter, {kWideTextLeft, 0, width() - kWideTextLeft - kSide, height()},
                      Qt::AlignLeft, text_.entry(), TextFit::kWideTile, weight, ink);
        return;
    }
    const QRect plate((width() - kPlate) / 2, kMargin, kPlate, kPlate);
    Paint::box(&painter, plate, Theme::kRadiusCard, isDown() ? Theme::kPressed : Theme::kRaised);
    Paint::glyph(&painter, plate, icon_, ink);
    TextFit::draw(&painter, {kSide, kTextTop, width() - 2 * kSide, kTextHeight}, Qt::AlignHCenter,
                  text_.entry(), TextFit::kTile, weight, ink);
}
