#include "screens/information/peer_card.h"

#include <QPainter>

#include "ui/paint.h"
#include "ui/text_fit.h"
#include "ui/theme.h"

namespace {

constexpr int kWidth = 448;
constexpr int kSide = 20;
constexpr int kEdge = 12;
constexpr int kHead = 52;
constexpr int kSign = 28;
constexpr int kGap = 10;
constexpr int kLine = 34;
constexpr int kTwoLines = 62;

constexpr TextFit::Rule kDetail{{{20, 2}, {18, 2}}, true};

/// By PeerCard::State.
constexpr struct Look {
    const char* sign;
    const QRgb* ink;
} kLooks[] = {
    {"pass_28.png", &Theme::kAccent},
    {"fail_28.png", &Theme::kDanger},
    {"not_run_28.png", &Theme::kList},
};

}  // namespace

PeerCard::PeerCard(QWidget* parent) : QWidget(parent) {
    setObjectName(QStringLiteral("PeerCard"));
    setSizePolicy(QSizePolicy::Preferred, QSizePolicy::Fixed);
}

void PeerCard::setPeer(State state, const ScriptHandler::Script& word, const QStringList& lines) {
    QStringList shown = lines;
    shown.removeAll(QString());
    if (state == state_ && word.script == word_.script && shown == lines_)
        return;
    state_ = state;
    word_ = TextFit::roleSized(word);
    lines_ = shown;
    updateGeometry();
    update();
}

ScriptHandler::Script PeerCard::lineText(const QString& line) const {
    ScriptHandler::Script text;
    text.fontFamily = title_.entry().fontFamily;
    text.script = line;
    return text;
}

int PeerCard::heightOf(const QString& line) const {
    const int width = TextFit::width(lineText(line), kDetail, QFont::Normal);
    return width <= kWidth - 2 * kSide ? kLine : kTwoLines;
}

void PeerCard::applyScripts(const Lookup& lookup) {
    title_.apply(lookup);
    updateGeometry();
    update();
}

QSize PeerCard::sizeHint() const {
    int height = kEdge + kHead + kEdge;
    for (const QString& line : lines_)
        height += heightOf(line);
    return {kWidth, height};
}

void PeerCard::paintEvent(QPaintEvent*) {
    QPainter painter(this);
    Paint::box(&painter, rect(), Theme::kRadiusCard, Theme::kRow);
    const Look& look = kLooks[static_cast<int>(state_)];
    QRect line(kSide, kEdge, width() - 2 * kSide, kHead);
    const int wordWidth = TextFit::width(word_, TextFit::kCaption, QFont::Bold);
    const QRect word(line.right() + 1 - wordWidth, line.y(), wordWidth, kHead);
    const QRect sign(word.x() - kGap - kSign, line.y(), kSign, kHead);
    Paint::icon(&painter, sign, QLatin1String(look.sign));
    TextFit::draw(&painter, word, Qt::AlignRight, word_, TextFit::kCaption, QFont::Bold, *look.ink);
    TextFit::draw(&painter, line.adjusted(0, 0, sign.x() - kGap - line.right(), 0), Qt::AlignLeft,
                  title_.entry(), TextFit::kRowLabel, QFont::Medium, Theme::kCaption);
    line.setTop(line.bottom() + 1);
    for (const QString& text : lines_) {
        line.setHeight(heightOf(text));
        TextFit::draw(&painter, line, Qt::AlignLeft, lineText(text), kDetail, QFont::Normal,
                      Theme::kList);
        line.translate(0, line.height());
    }
}
