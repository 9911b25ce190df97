#include "ui/text_line.h"

#include <QPainter>

#include "ui/text_fit.h"
#include "ui/theme.h"

namespace {

struct Style {
    TextFit::Rule rule;
    QFont::Weight weight;
    const QRgb* ink;
};

constexpr TextFit::Rule kCount{{{104, 1}}};

// By role.
constexpr Style kStyles[] = {
    {TextFit::kTitle, QFont::Medium, &Theme::kStrong},
    {TextFit::kBand, QFont::Bold, &Theme::kOnAccent},
    {TextFit::kConfirmation, QFont::Bold, &Theme::kStrong},
    {TextFit::kName, QFont::Bold, &Theme::kStrong},
    {TextFit::kIdNumber, QFont::Medium, &Theme::kCaption},
    {TextFit::kCaption, QFont::Normal, &Theme::kHint},
    {kCount, QFont::Bold, &Theme::kStrong},
};

}  // namespace

TextLine::TextLine(QWidget* parent) : QWidget(parent) {
    setObjectName(QStringLiteral("TextLine"));
}

void TextLine::setText(const QString& text) {
    if (text_.text() == text)
        return;
    text_.setText(text);
    update();
}

void TextLine::setScript(const ScriptHandler::Script& script) {
    text_.setEntry(script);
    update();
}

void TextLine::setRole(Role role) {
    role_ = role;
    update();
}

void TextLine::setAlignment(Qt::Alignment alignment) {
    alignment_ = alignment;
    update();
}

void TextLine::setInk(QRgb ink) {
    ink_ = ink;
    update();
}

void TextLine::applyScripts(const Lookup& lookup) {
    text_.apply(lookup);
    update();
}

void TextLine::paintEvent(QPaintEvent*) {
    QPainter painter(this);
    const Style& style = kStyles[role_];
    TextFit::draw(&painter, rect(), alignment_, text_.entry(), style.rule, style.weight,
                  ink_ != 0 ? ink_ : *style.ink);
}
