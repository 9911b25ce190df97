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
constexpr int kSide = 2;  // least room beside the tick and the word

}  // namespace

Toggle::Toggle(QWidget* parent) : WidgetButton(parent) {
    setObjectName(QStringLiteral("Toggle"));
    connect(this, &WidgetButton::touched, this,
            [this] { setCurrentIndex(touchPoint().x() < width() / 2 ? 0 : 1); });
}

void Toggle::setCurrentIndex(int index) {
    const int current = index == 0 ? 0 : 1;
    if (current_ == current)
        return;
    current_ = current;
    update();
    emit currentIndexChanged(current_);
}

void Toggle::applyScripts(const Lookup& lookup) {
    for (ScriptText& word : words_)
        word.apply(lookup);
    updateGeometry();
    update();
}

QSize Toggle::sizeHint() const {
    int widest = 0;
    for (const ScriptText& word : words_)
        widest = qMax(widest, TextFit::width(word.entry(), TextFit::kToggle, QFont::Bold));
    const int half = kTick + kTickGap + widest + 2 * kSide;
    return {qMax(kInlineWidth, 2 * (half + kInset)), kHeight};
}

void Toggle::paintEvent(QPaintEvent*) {
    QPainter painter(this);
    drawField(&painter, rect(), isDown());
    const int half = (width() - 2 * kInset) / 2;
    for (int i = 0; i < 2; ++i) {
        const QRect box(kInset + i * half, kInset, half, height() - 2 * kInset);
        const ScriptHandler::Script& word = words_[i].entry();
        if (i != current_) {
            TextFit::draw(&painter, box, Qt::AlignHCenter, word, TextFit::kToggle, QFont::Medium,
                          isEnabled() ? Theme::kList : Theme::kOff);
            continue;
        }
        Paint::box(&painter, box, Theme::kRadiusThumb,
                   isEnabled() ? Theme::kAccent : Theme::kOffFill);
        const QRgb ink = isEnabled() ? Theme::kOnAccent : Theme::kRow;
        const int room = half - kTick - kTickGap - 2 * kSide;
        const int wordWidth = qMin(TextFit::width(word, TextFit::kToggle, QFont::Bold), room);
        const int left = box.x() + (half - kTick - kTickGap - wordWidth) / 2;
        Paint::glyph(&painter, {left, box.y(), kTick, box.height()}, QStringLiteral("tick.png"),
                     ink, kTick);
        TextFit::draw(&painter, {left + kTick + kTickGap, box.y(), wordWidth, box.height()},
                      Qt::AlignLeft, word, TextFit::kToggle, QFont::Bold, ink);
    }
}
