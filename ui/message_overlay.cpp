#include "ui/message_overlay.h"

#include <QLabel>
#include <utility>

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

Scripted::Lookup& theScripts() {
    static Scripted::Lookup scripts;
    return scripts;
}

}  // namespace

MessageOverlay::MessageOverlay(QWidget* parent, DialogRank rank)
    : DialogOverlay(parent, rank),
      text_(makeLine(card(), QStringLiteral("dialogText"), QFont::Medium, Theme::kStrong)),
      secondText_(
          makeLine(card(), QStringLiteral("dialogSecondText"), QFont::Normal, Theme::kList)) {}

void MessageOverlay::setScripts(Lookup lookup) {
    theScripts() = std::move(lookup);
}

void MessageOverlay::scriptsChanged(const QWidget* widget) {
    if (!theScripts())
        return;
    const QVector<DialogOverlay*> open = DialogStack::instance().all(widget);
    for (DialogOverlay* dialog : open) {
        applyBelow(dialog, theScripts());
        if (auto* scripted = dynamic_cast<Scripted*>(dialog))
            scripted->applyScripts(theScripts());
    }
}

void MessageOverlay::setText(const ScriptHandler::Script& script) {
    textKeys_.clear();
    setLine(text_, script);
}

void MessageOverlay::setTextKey(const QString& key, const QString& argument) {
    textArgument_ = argument;
    textKeys_ = QStringList(key);
    applyScripts();
}

void MessageOverlay::setTextKeys(const QStringList& keys) {
    textArgument_.clear();
    textKeys_ = keys;
    if (keys.isEmpty())
        setLine(text_, {});
    else
        applyScripts();
}

void MessageOverlay::setSecondText(const ScriptHandler::Script& script) {
    secondTextKey_.clear();
    setLine(secondText_, script);
}

void MessageOverlay::setSecondTextKey(const QString& key) {
    secondTextKey_ = key;
    if (key.isEmpty())
        setLine(secondText_, {});
    else
        applyScripts();
}

void MessageOverlay::applyScripts(const Lookup& lookup) {
    if (!textKeys_.isEmpty()) {
        ScriptHandler::Script text;
        QStringList lines;
        for (const QString& key : qAsConst(textKeys_)) {
            text = lookup(key);
            lines.append(text.script);
        }
        text.script = lines.join(QLatin1Char('\n'));
        if (!textArgument_.isNull())
            text.script.replace(QLatin1String("%1"), textArgument_);
        setLine(text_, text);
    }
    if (!secondTextKey_.isEmpty())
        setLine(secondText_, lookup(secondTextKey_));
}

void MessageOverlay::applyScripts() {
    if (theScripts())
        applyScripts(theScripts());
}

void MessageOverlay::opened() {
    applyScripts();
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
