#include "screens/recognize/work_button.h"

#include <QPainter>

#include "ui/paint.h"
#include "ui/text_fit.h"
#include "ui/theme.h"

namespace {

constexpr int kPictureTop = 19;
constexpr int kPictureSize = 56;
constexpr int kTextTop = 78;
constexpr int kTextHeight = 48;
constexpr int kSide = 8;
constexpr QRect kBadge(0, 0, 28, 28);
constexpr int kBadgeTop = 8;
constexpr TextFit::Rule kRule{{{28, 1}, {24, 1}, {20, 2}}};

}  // namespace

WorkButton::WorkButton(QWidget* parent) : WidgetButton(parent) {
    setObjectName(QStringLiteral("WorkButton"));
}

void WorkButton::applyScripts(const Lookup& lookup) {
    text_.apply(lookup);
    update();
}

void WorkButton::paintEvent(QPaintEvent*) {
    QPainter painter(this);
    QRgb ink = Theme::kCaption;
    const char* state = "";
    if (isSelected()) {
        // Stays marked when all buttons are switched off after the choice.
        Paint::box(&painter, rect(), Theme::kRadiusCard, Theme::kAccentTint, Theme::kAccent, 2);
        ink = Theme::kAccent;
        state = "_pressed";
    } else if (!isEnabled()) {
        Paint::box(&painter, rect(), Theme::kRadiusCard, Theme::kRow);
        ink = Theme::kOff;
        state = "_disabled";
    } else if (isDown()) {
        Paint::box(&painter, rect(), Theme::kRadiusCard, Theme::kPressed);
        ink = Theme::kAccent;
        state = "_pressed";
    } else {
        Paint::box(&painter, rect(), Theme::kRadiusCard, Theme::kRaised);
    }
    Paint::icon(&painter, {0, kPictureTop, width(), kPictureSize},
                picture_ + QLatin1String(state) + QLatin1String(".png"));
    TextFit::draw(&painter, {kSide, kTextTop, width() - 2 * kSide, kTextHeight}, Qt::AlignHCenter,
                  text_.entry(), kRule, QFont::Bold, ink);
    if (isSelected()) {
        const QRect badge = kBadge.translated(width() - kBadge.width() - kBadgeTop, kBadgeTop);
        Paint::box(&painter, badge, badge.width() / 2.0, Theme::kAccent);
        Paint::glyph(&painter, badge, QStringLiteral("tick.png"), Theme::kOnAccent, 20);
    }
}
