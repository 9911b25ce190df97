#include "ui/fact_list.h"

#include <QPainter>

#include "ui/paint.h"
#include "ui/text_fit.h"
#include "ui/theme.h"

namespace {

constexpr int kWidth = 448;
constexpr int kSide = 20;
constexpr int kEdge = 10;  // above and below all facts
constexpr int kLine = 40;
constexpr int kBelow = 32;  // each line of a value that stands below its caption
constexpr int kGap = 16;
constexpr int kMostLines = 3;

constexpr TextFit::Rule kFact{{{22, 1}, {20, 2}, {18, kMostLines}}, true};

}  // namespace

FactList::FactList(QWidget* parent) : QWidget(parent), ground_(Theme::kRow) {
    setObjectName(QStringLiteral("FactList"));
    setSizePolicy(QSizePolicy::Preferred, QSizePolicy::Fixed);
}

QStringList FactList::captionKeys() const {
    QStringList keys;
    for (const Fact& fact : facts_)
        keys.append(fact.caption.key());
    return keys;
}

void FactList::setCaptionKeys(const QStringList& keys) {
    facts_.clear();
    for (const QString& key : keys) {
        facts_.append(Fact{});
        facts_.last().caption.setKey(key);
    }
}

void FactList::setValue(int fact, const QString& value) {
    if (facts_.at(fact).value == value)
        return;
    facts_[fact].value = value;
    updateGeometry();
    update();
}

void FactList::setGround(QRgb ground) {
    ground_ = ground;
    update();
}

ScriptHandler::Script FactList::valueText(const Fact& fact) const {
    ScriptHandler::Script text;
    text.fontFamily = fact.caption.entry().fontFamily;
    text.script = fact.value;
    return text;
}

int FactList::linesBelow(const Fact& fact, int width) const {
    const int caption = TextFit::width(fact.caption.entry(), TextFit::kCaption, QFont::Normal);
    const int value = TextFit::width(valueText(fact), kFact, QFont::Medium);
    if (caption + kGap + value <= width)
        return 0;
    if (value <= width)
        return 1;
    // A little too wide for one line is not too wide for two smaller ones.
    return value <= width * 3 / 2 ? 2 : kMostLines;
}

int FactList::heightFor(int width) const {
    int height = 2 * kEdge;
    for (const Fact& fact : facts_) {
        if (!fact.value.isEmpty())
            height += kLine + kBelow * linesBelow(fact, width - 2 * kSide);
    }
    return height;
}

QSize FactList::sizeHint() const {
    return {kWidth, heightFor(kWidth)};
}

void FactList::applyScripts(const Lookup& lookup) {
    for (Fact& fact : facts_)
        fact.caption.apply(lookup);
    updateGeometry();
    update();
}

void FactList::paintEvent(QPaintEvent*) {
    QPainter painter(this);
    Paint::box(&painter, rect(), Theme::kRadiusCard, ground_);
    QRect line(kSide, kEdge, width() - 2 * kSide, kLine);
    for (const Fact& fact : qAsConst(facts_)) {
        if (fact.value.isEmpty())
            continue;
        TextFit::draw(&painter, line, Qt::AlignLeft, fact.caption.entry(), TextFit::kCaption,
                      QFont::Normal, Theme::kHint);
        const int lines = linesBelow(fact, line.width());
        QRect value = line;
        if (lines > 0)
            value = QRect(line.x(), line.bottom() + 1 - kEdge, line.width(), lines * kBelow);
        TextFit::draw(&painter, value, lines > 0 ? Qt::AlignLeft : Qt::AlignRight, valueText(fact),
                      kFact, QFont::Medium, Theme::kStrong);
        line.translate(0, kLine + lines * kBelow);
    }
}
