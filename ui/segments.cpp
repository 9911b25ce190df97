#include "ui/segments.h"

#include <QPainter>

#include "ui/paint.h"
#include "ui/theme.h"

namespace {

constexpr int kWidth = 428;
constexpr int kHeight = 56;
constexpr int kWordsHeight = 30;
constexpr int kWordsSide = 10;
constexpr int kInset = 4;  // the outline and 3 pixels of ground

}  // namespace

Segments::Segments(QWidget* parent) : Choice(parent) {
    setObjectName(QStringLiteral("Segments"));
    connect(this, &WidgetButton::touched, this, [this] {
        const int touched = (touchPoint().x() - kInset) * count() / qMax(1, width() - 2 * kInset);
        setCurrentIndex(qBound(0, touched, count() - 1));
    });
}

void Segments::setSegments(int count) {
    QVector<ScriptText> numbers(count);
    for (int i = 0; i < count; ++i)
        numbers[i].setText(QString::number(i + 1));
    setTexts(numbers);
}

void Segments::applyScripts(const Lookup& lookup) {
    left_.apply(lookup);
    right_.apply(lookup);
    Choice::applyScripts(lookup);
}

QSize Segments::sizeHint() const {
    return {kWidth, kHeight + kWordsHeight};
}

void Segments::paintEvent(QPaintEvent*) {
    QPainter painter(this);
    drawField(&painter, {0, 0, width(), kHeight}, isDown());
    const int room = width() - 2 * kInset;
    for (int i = 0; i < count(); ++i) {
        const int left = room * i / count();
        const QRect box(kInset + left, kInset, room * (i + 1) / count() - left,
                        kHeight - 2 * kInset);
        const bool chosen = i == currentIndex();
        if (chosen)
            Paint::box(&painter, box, Theme::kRadiusThumb,
                       isEnabled() ? Theme::kAccent : Theme::kOffFill);
        const QRgb ink = chosen && isEnabled() ? Theme::kOnAccent
                         : chosen              ? Theme::kRow
                         : isEnabled()         ? Theme::kList
                                               : Theme::kOff;
        TextFit::draw(&painter, box, Qt::AlignHCenter, items().at(i).entry(), TextFit::kButton,
                      chosen ? QFont::Bold : QFont::Medium, ink);
    }
    const QRect words(kWordsSide, kHeight, width() - 2 * kWordsSide, kWordsHeight);
    const QRgb ink = isEnabled() ? Theme::kHint : Theme::kOff;
    TextFit::draw(&painter, words, Qt::AlignLeft, left_.entry(), TextFit::kCaption, QFont::Normal,
                  ink);
    TextFit::draw(&painter, words, Qt::AlignRight, right_.entry(), TextFit::kCaption, QFont::Normal,
                  ink);
}
