#include "ui/input_field.h"

#include <QFontMetrics>
#include <QPainter>

#include "ui/text_fit.h"
#include "ui/theme.h"

namespace {

constexpr int kPadding = 19;
constexpr int kTimeRangePadding = 6;
constexpr int kTimeRangeDigits = 8;
constexpr int kCaretHeight = 28;

/// The digits of a time range with the signs between them: "hh:mm~hh:mm".
QString asTimeRange(const QString& digits) {
    static const QString kSigns = QStringLiteral(":~:");
    QString text;
    for (int i = 0; i < digits.size(); ++i) {
        if (i > 0 && i % 2 == 0)
            text += kSigns.at(i / 2 - 1);
        text += digits.at(i);
    }
    return text;
}

}  // namespace

InputField::InputField(QWidget* parent) : WidgetButton(parent) {
    setObjectName(QStringLiteral("InputField"));
    connect(this, &WidgetButton::touched, this, &InputField::editRequested);
}

QString InputField::text() const {
    return allowed_ == TimeRange ? asTimeRange(typed_) : typed_;
}

void InputField::setText(const QString& text) {
    preedit_.clear();
    setTyped(filtered(text, maxLength()));
}

void InputField::insert(const QString& text) {
    preedit_.clear();
    update();
    const QString kept = startsOver_ ? QString() : typed_;
    const QString added = filtered(text, maxLength() - kept.size());
    if (!added.isEmpty())
        setTyped(kept + added);
}

void InputField::backspace() {
    if (!preedit_.isEmpty()) {
        preedit_.clear();
        update();
        return;
    }
    const bool pair = typed_.size() > 1 && typed_.at(typed_.size() - 1).isLowSurrogate();
    setTyped(typed_.left(typed_.size() - (pair ? 2 : 1)));
}

void InputField::clear() {
    setText(QString());
}

bool InputField::setPreedit(const QString& preedit) {
    if (filtered(preedit, maxLength() - typed_.size()) != preedit)
        return false;
    preedit_ = preedit;
    update();
    return true;
}

int InputField::maxLength() const {
    return allowed_ == TimeRange ? qMin(maxLength_, kTimeRangeDigits) : maxLength_;
}

void InputField::setMaxLength(int length) {
    maxLength_ = length;
    setText(typed_);
}

void InputField::setAllowedCharacters(Characters characters) {
    allowed_ = characters;
    setText(typed_);
    updateGeometry();
}

void InputField::setPasswordMode(bool password) {
    password_ = password;
    update();
}

void InputField::setEditing(bool editing) {
    if (editing_ == editing)
        return;
    editing_ = editing;
    startsOver_ = editing_ && allowed_ == TimeRange && typed_.size() == maxLength();
    if (!editing_ && !preedit_.isEmpty())
        insert(QString(preedit_));
    update();
    if (!editing_)
        emit editingFinished();
}

void InputField::applyScripts(const Lookup& lookup) {
    placeholder_.apply(lookup);
    update();
}

QSize InputField::sizeHint() const {
    return {allowed_ == TimeRange ? 172 : 232, 56};
}

bool InputField::accepts(uint character) const {
    // Comparing the codes keeps out the digits of other scripts, which QChar::isDigit() lets in.
    switch (allowed_) {
        case Any:
            return QChar::isPrint(character);
        case Latin:
            return character >= 0x20 && character < 0x7f;
        case Address:
            if (character == '.')
                return true;
            Q_FALLTHROUGH();
        case Digits:
        case TimeRange:
            return character >= '0' && character <= '9';
    }
    return false;
}

QString InputField::filtered(const QString& text, int room) const {
    QString kept;
    const QVector<uint> characters = text.toUcs4();
    for (const uint character : characters) {
        const QString next = QString::fromUcs4(&character, 1);
        if (kept.size() + next.size() > room)
            break;
        if (accepts(character))
            kept += next;
    }
    return kept;
}

void InputField::setTyped(const QString& typed) {
    startsOver_ = false;
    update();
    if (typed_ == typed)
        return;
    typed_ = typed;
    emit textChanged(text());
}

void InputField::paintEvent(QPaintEvent*) {
    QPainter painter(this);
    const bool focused = editing_ && isEnabled();
    drawField(&painter, rect(), isDown(), focused);

    ScriptHandler::Script shown = placeholder_.entry();
    const bool empty = typed_.isEmpty() && preedit_.isEmpty();
    const QRgb ink = !isEnabled() ? Theme::kOff : empty ? Theme::kHint : Theme::kStrong;
    if (allowed_ == TimeRange) {
        if (!empty)
            shown.script = text();
        TextFit::draw(&painter, rect().adjusted(kTimeRangePadding, 0, -kTimeRangePadding, 0),
                      Qt::AlignHCenter, shown, TextFit::kValue, QFont::Normal, ink);
        return;
    }

    QRect line = rect().adjusted(kPadding, 0, -kPadding, 0);
    if (!empty) {
        const QString whole = typed_ + preedit_;
        shown.script = password_ ? QString(whole.size(), QChar(0x2022)) : whole;
    }
    const int textWidth = TextFit::width(shown, TextFit::kValue, QFont::Normal);
    if (focused && !empty && textWidth > line.width()) {
        // While it is typed one wants to see its end.
        painter.setClipRect(line);
        line.setLeft(line.right() + 1 - textWidth);
    }
    TextFit::draw(&painter, line, Qt::AlignLeft, shown, TextFit::kValue, QFont::Normal, ink);
    if (!focused)
        return;
    const int end = line.x() + (empty ? 0 : textWidth);
    painter.setClipping(false);
    painter.fillRect(end + 1, (height() - kCaretHeight) / 2, 2, kCaretHeight,
                     Theme::color(Theme::kAccent));
    if (!preedit_.isEmpty()) {
        ScriptHandler::Script open = shown;
        open.script = preedit_;
        const int openWidth = TextFit::width(open, TextFit::kValue, QFont::Normal);
        painter.fillRect(end - openWidth, (height() + kCaretHeight) / 2, openWidth, 2,
                         Theme::color(Theme::kAccent));
    }
}
