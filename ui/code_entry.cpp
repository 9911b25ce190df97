#include "ui/code_entry.h"

#include <QPainter>

#include "ui/paint.h"
#include "ui/text_fit.h"
#include "ui/theme.h"

namespace {

constexpr int kDigits = 11;
constexpr int kCellWidth = 34;
constexpr int kCellHeight = 60;
constexpr int kCellPitch = 38;
constexpr int kGroupGap = 9;  // more than between the cells of a group
constexpr int kCaretHeight = 30;
constexpr int kCaptionTop = 80;
constexpr int kCaptionHeight = 36;
constexpr int kCountWidth = 100;
constexpr TextFit::Rule kDigit{{{30, 1}}};
constexpr TextFit::Rule kCaption{{{20, 1}, {18, 1}}};

int cellLeft(int index) {
    return index * kCellPitch + kGroupGap * ((index >= 3) + (index >= 7));
}

}  // namespace

CodeEntry::CodeEntry(QWidget* parent) : InputField(parent) {
    setObjectName(QStringLiteral("CodeEntry"));
    setAllowedCharacters(Digits);
    setMaxLength(kDigits);
}

void CodeEntry::applyScripts(const Lookup& lookup) {
    InputField::applyScripts(lookup);
    caption_.apply(lookup);
}

QSize CodeEntry::sizeHint() const {
    return {432, kCaptionTop + kCaptionHeight};
}

void CodeEntry::paintEvent(QPaintEvent*) {
    QPainter painter(this);
    const QString digits = text();
    ScriptHandler::Script shown;
    shown.fontFamily = family();
    for (int i = 0; i < kDigits; ++i) {
        const QRect cell(cellLeft(i), 0, kCellWidth, kCellHeight);
        const bool current = isEditing() && isEnabled() && i == digits.size();
        if (!isEnabled())
            Paint::box(&painter, cell, Theme::kRadiusCheck, Theme::kRow, Theme::kOffLine, 1);
        else if (current)
            Paint::box(&painter, cell, Theme::kRadiusCheck, Theme::kBackground, Theme::kAccent, 2);
        else
            Paint::box(&painter, cell, Theme::kRadiusCheck,
                       isDown() ? Theme::kRowPressed : Theme::kBackground, Theme::kOutline, 1);
        if (current)
            painter.fillRect(cell.x() + kCellWidth / 2 - 1, (kCellHeight - kCaretHeight) / 2, 2,
                             kCaretHeight, Theme::color(Theme::kAccent));
        if (i < digits.size()) {
            shown.script = passwordMode() ? QString(QChar(0x2022)) : QString(digits.at(i));
            TextFit::draw(&painter, cell, Qt::AlignHCenter, shown, kDigit, QFont::Bold,
                          isEnabled() ? Theme::kStrong : Theme::kOff);
        }
    }
    const QRgb ink = isEnabled() ? Theme::kList : Theme::kOff;
    const QRect line(0, kCaptionTop, width(), kCaptionHeight);
    TextFit::draw(&painter, line.adjusted(0, 0, -kCountWidth, 0), Qt::AlignLeft, caption_.entry(),
                  kCaption, QFont::Normal, ink);
    shown.script = QStringLiteral("%1 / %2").arg(digits.size()).arg(kDigits);
    TextFit::draw(&painter, line, Qt::AlignRight, shown, kCaption, QFont::Medium, ink);
}
