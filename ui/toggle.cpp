#include "ui/toggle.h"

#include <QPainter>

#include "ui/paint.h"
#include "ui/text_fit.h"
#include "ui/theme.h"

namespace {

constexpr int kInlineWidth = 226;
constexpr int kHeight = 56;
constexpr int kInset = 4;  // the outline and 3 pixels of ground
constexpr int kTick = 22;
constexpr int kTickGap = 8;
constexpr int kLeastTickGap = 6;  // rather than take a line of its own
constexpr int kSide = 6;          // least room beside the tick and the word

}  // namespace

Toggle::Toggle(QWidget* parent) : Choice(parent) {
    setObjectName(QStringLiteral("Toggle"));
    connect(this, &WidgetButton::touched, this,
            [this] { setCurrentIndex(touchPoint().x() < width() / 2 ? 0 : 1); });
    setTexts(QVector<ScriptText>(2));
}

void Toggle::setCurrentIndex(int index) {
    Choice::setCurrentIndex(index == 0 ? 0 : 1);
}

QSize Toggle::sizeHint() const {
    const int half = kTick + kLeastTickGap + widestText(TextFit::kToggle, QFont::Bold) + 2 * kSide;
    return {qMax(kInlineWidth, 2 * (half + kInset)), kHeight};
}

void Toggle::paintEvent(QPaintEvent*) {
    QPainter painter(this);
    drawField(&painter, rect(), isDown());
    const int half = (width() - 2 * kInset) / 2;
    for (int i = 0; i < 2; ++i) {
        const QRect box(kInset + i * half, kInset, half, height() - 2 * kInset);
        const ScriptHandler::Script& word = items().at(i).entry();
        if (i != currentIndex()) {
            TextFit::draw(&painter, box, Qt::AlignHCenter, word, TextFit::kToggle, QFont::Medium,
                          isEnabled() ? Theme::kList : Theme::kOff);
            continue;
        }
        Paint::box(&painter, box, Theme::kRadiusThumb,
                   isEnabled() ? Theme::kAccent : Theme::kOffFill);
        const QRgb ink = isEnabled() ? Theme::kOnAccent : Theme::kRow;
        const int room = half - kTick - 2 * kSide;
        const int wordWidth =
            qMin(TextFit::width(word, TextFit::kToggle, QFont::Bold), room - kLeastTickGap);
        const int gap = qMin(room - wordWidth, kTickGap);
        const int left = box.x() + (half - kTick - gap - wordWidth) / 2;
        Paint::glyph(&painter, {left, box.y(), kTick, box.height()}, QStringLiteral("tick.png"),
                     ink, kTick);
        TextFit::draw(&painter, {left + kTick + gap, box.y(), wordWidth, box.height()},
                      Qt::AlignLeft, word, TextFit::kToggle, QFont::Bold, ink);
    }
}
