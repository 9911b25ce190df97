#include "screens/information/count_bar.h"

#include <QPainter>

#include "ui/paint.h"
#include "ui/text_fit.h"
#include "ui/theme.h"

namespace {

constexpr int kSide = 20;
constexpr int kGap = 12;
constexpr int kTextHeight = 60;
constexpr int kBarTop = 62;
constexpr int kBar = 12;

constexpr TextFit::Rule kNumber{{{24, 1}, {20, 1}}};

}  // namespace

CountBar::CountBar(QWidget* parent) : QWidget(parent) {
    setObjectName(QStringLiteral("CountBar"));
}

void CountBar::setCount(quint32 count, quint32 most, const QString& text) {
    count_ = text;
    share_ = most == 0 ? 0 : qMin(1.0, static_cast<qreal>(count) / most);
    update();
}

void CountBar::applyScripts(const Lookup& lookup) {
    text_.apply(lookup);
    update();
}

void CountBar::paintEvent(QPaintEvent*) {
    QPainter painter(this);
    Paint::box(&painter, rect(), Theme::kRadiusControl, Theme::kRow);
    ScriptHandler::Script number;
    number.fontFamily = text_.entry().fontFamily;
    number.script = count_;
    const QRect line(kSide, 0, width() - 2 * kSide, kTextHeight);
    const int numberWidth = TextFit::width(number, kNumber, QFont::Bold);
    TextFit::draw(&painter, line, Qt::AlignRight, number, kNumber, QFont::Bold, Theme::kStrong);
    TextFit::draw(&painter, line.adjusted(0, 0, -numberWidth - kGap, 0), Qt::AlignLeft,
                  text_.entry(), TextFit::kRowLabel, QFont::Medium, Theme::kCaption);
    const QRectF track(kSide, kBarTop, line.width(), kBar);
    Paint::box(&painter, track, kBar / 2.0, Theme::kBackground);
    // One user among thousands is to be seen as well.
    if (share_ > 0)
        Paint::box(&painter,
                   {track.x(), track.y(), qMax<qreal>(kBar, track.width() * share_), kBar},
                   kBar / 2.0, Theme::kAccent);
}
