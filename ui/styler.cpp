#include "ui/styler.h"

#include <QApplication>
#include <QLabel>
#include <QStringList>
#include <utility>

namespace {

QString body(const QString& height, const QString& text) {
    return QStringLiteral("<html><head/><body style=' line-height:%1%;'>%2</body></html>")
        .arg(height, text);
}

/// The label's font in the application's own family, which a script's text may have changed.
QFont ownFont(const QLabel* label) {
    QFont font = label->font();
    font.setFamily(QApplication::font().family());
    return font;
}

QFont withTypography(QFont font, int size, qreal letter) {
    // A size of 0 is what a missing entry gives; Qt wants a positive one.
    if (size > 0)
        font.setPixelSize(size);
    font.setLetterSpacing(QFont::AbsoluteSpacing, letter);
    return font;
}

void makeRichText(QLabel* label) {
    label->setTextFormat(Qt::RichText);
    label->setTextInteractionFlags(Qt::NoTextInteraction);
}

}  // namespace

void Styler::setText(QLabel* label, const ScriptHandler::Script& script) {
    QFont font = withTypography(label->font(), static_cast<int>(script.size),
                                static_cast<qreal>(script.letter));
    font.setFamily(script.fontFamily);
    makeRichText(label);
    label->setText(
        body(QString::number(static_cast<double>(script.height), 'g', 6), script.script));
    label->setFont(font);
}

void Styler::setText(QLabel* label, const ss& style) {
    label->setText(getText(label, style));
}

QString Styler::getText(QLabel* label, const ss& style) {
    label->setFont(withTypography(ownFont(label), style.size, style.letter));
    makeRichText(label);
    return body(QString::number(style.height), QString::fromUtf8(style.text));
}

void Styler::setFont(QLabel* label, const ss& style) {
    label->setFont(withTypography(ownFont(label), style.size, style.letter));
    label->setTextInteractionFlags(Qt::NoTextInteraction);
}

void Styler::setText(TextEdit*, const ss&) {}

void Styler::getBetweenTime(QString, QString*, QString*) {}

void Styler::setStyleSheet(QWidget* widget, QString name, QString value, bool addIfMissing) {
    const QString property = name + QLatin1String(" : ") + value + QLatin1Char(';');
    const QStringList lines = widget->styleSheet().split(QLatin1Char('\n'));
    QString sheet;
    bool replaced = false;
    for (const QString& line : lines) {
        const int colon = line.indexOf(QLatin1Char(':'));
        const bool matches = line.left(qMax(colon, 0)).trimmed() == name;
        replaced = replaced || matches;
        sheet += (matches ? property : line) + QLatin1Char('\n');
    }
    if (!replaced && addIfMissing)
        sheet += property;
    widget->setStyleSheet(sheet);
}

StylerFont::StylerFont(QString lineHeight) : lineHeight_(std::move(lineHeight)) {}

QString StylerFont::getHtml(const QString& text) const {
    return QStringLiteral("<p style='; line-height : %1;'>%2</p>").arg(lineHeight_, text);
}
