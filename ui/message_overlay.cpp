#include "ui/message_overlay.h"

#include <QLabel>

#include "ui/styler.h"
#include "ui/theme.h"

namespace {

constexpr int kPictureSize = 72;
constexpr int kPictureGap = 20;
constexpr int kSecondTextGap = 8;

QLabel* makeLine(QWidget* card, const QString& name, QFont::Weight weight, QRgb color) {
    auto* line = new QLabel(card);
    line->setObjectName(name);
    line->setAlignment(Qt::AlignCenter);
    line->setWordWrap(true);
    QFont font = line->font();
    font.setWeight(weight);
    line->setFont(font);
    QPalette palette = line->palette();
    palette.setColor(QPalette::WindowText, Theme::color(color));
    line->setPalette(palette);
    line->hide();
    return line;
}

}  // namespace

MessageOverlay::MessageOverlay(QWidget* parent)
    : DialogOverlay(parent),
      text_(makeLine(card(), QStringLiteral("dialogText"), QFont::Medium, Theme::kStrong)),
      secondText_(
          makeLine(card(), QStringLiteral("dialogSecondText"), QFont::Normal, Theme::kList)) {}

void MessageOverlay::setText(const ScriptHandler::Script& script) {
    setLine(text_, script);
}

void MessageOverlay::setSecondText(const ScriptHandler::Script& script) {
    setLine(secondText_, script);
}

int MessageOverlay::arrangeMessage(QWidget* picture) {
    int y = kTop;
    if (!picture->isHidden()) {
        picture->setGeometry((kCardWidth - kPictureSize) / 2, y, kPictureSize, kPictureSize);
        y += kPictureSize + kPictureGap;
    }
    for (QLabel* line : {text_, secondText_}) {
        if (line->isHidden())
            continue;
        if (line == secondText_)
            y += kSecondTextGap;
        const int height = line->heightForWidth(kInnerWidth);
        line->setGeometry(kSide, y, kInnerWidth, height);
        y += height;
    }
    return y;
}

QString MessageOverlay::family() const {
    return text_->font().family();
}

void MessageOverlay::setLine(QLabel* line, ScriptHandler::Script script) {
    script.script.replace(QLatin1Char('\n'), QLatin1String("<br>"));
    Styler::setText(line, script);
    line->setVisible(!script.script.isEmpty());
    partsChanged();
}
