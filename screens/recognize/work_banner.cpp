#include "screens/recognize/work_banner.h"

#include <QPainter>
#include <QStyle>
#include <QStyleOption>

#include "ui/paint.h"
#include "ui/text_fit.h"
#include "ui/theme.h"

namespace {

constexpr QRect kDisc(24, 16, 72, 72);
constexpr QRect kMode(116, 13, 348, 41);
constexpr QRect kRange(116, 56, 348, 32);
constexpr QRect kModeAlone(116, 13, 348, 78);
constexpr QRect kMore(436, 38, 28, 28);
constexpr TextFit::Rule kModeRule{{{28, 1}, {24, 1}, {22, 2}}};
constexpr TextFit::Rule kModeAloneRule{{{28, 2}, {24, 2}}};
constexpr TextFit::Rule kRangeRule{{{22, 1}, {18, 1}}};

}  // namespace

WorkBanner::WorkBanner(QWidget* parent) : WidgetButton(parent) {}

void WorkBanner::setGround(const QString& sheet) {
    if (ground_ == sheet)
        return;
    ground_ = sheet;
    // A semicolon behind the last brace makes a rule without a selector, which Qt complains of.
    QString rules = sheet;
    while (rules.endsWith(QLatin1Char(';')))
        rules.chop(1);
    setStyleSheet(rules);
}

void WorkBanner::setTouchable(bool touchable) {
    if (touchable_ == touchable)
        return;
    touchable_ = touchable;
    update();
}

void WorkBanner::setContent(const QString& icon, const ScriptHandler::Script& mode,
                            const ScriptHandler::Script& range) {
    icon_ = icon;
    mode_ = mode;
    range_ = range;
    update();
}

void WorkBanner::paintEvent(QPaintEvent*) {
    QPainter painter(this);
    // Not even a missing picture leaves the texts on the camera's picture.
    painter.fillRect(rect(), Theme::color(Theme::kBar));
    QStyleOption option;
    option.initFrom(this);
    style()->drawPrimitive(QStyle::PE_Widget, &option, &painter, this);
    if (isDown())
        painter.fillRect(rect(), Theme::color(Theme::kDim));
    if (!icon_.isEmpty()) {
        Paint::box(&painter, kDisc, kDisc.width() / 2.0, Theme::kDisc);
        Paint::icon(&painter, kDisc, icon_);
    }
    const int more = touchable_ ? kMore.width() : 0;
    if (touchable_)
        Paint::glyph(&painter, kMore, QStringLiteral("chevron_right.png"), Theme::kCaption);
    const bool alone = range_.script.isEmpty();
    TextFit::draw(&painter, (alone ? kModeAlone : kMode).adjusted(0, 0, -more, 0), Qt::AlignLeft,
                  mode_, alone ? kModeAloneRule : kModeRule, QFont::Bold, Theme::kStrong);
    TextFit::draw(&painter, kRange.adjusted(0, 0, -more, 0), Qt::AlignLeft, range_, kRangeRule,
                  QFont::Medium, Theme::kCaption);
}
