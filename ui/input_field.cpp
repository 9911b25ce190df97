#include "ui/input_field.h"

#include <QFontMetrics>
#include <QPainter>
#include <utility>

#include "ui/text_fit.h"
#include "ui/theme.h"

namespace {

constexpr int kPadding = 19;
constexpr int kPatternPadding = 6;
constexpr int kCaretHeight = 28;
constexpr float kDotSize = 34;  // the dot is small in its font

/// How the digits stand in a field with signs between them; null for other fields.
const char* patternOf(InputField::Characters characters) {
    switch (characters) {
        case InputField::TimeRange:
            return "00:00~00:00";
        case InputField::Date:
            return "0000-00-00";
        case InputField::Time:
            return "00:00";
        default:
            return nullptr;
    }
}

/// @p digits with the signs of @p pattern between them.
QString withSigns(const QString& digits, const char* pattern) {
    QString text;
    int next = 0;
    for (; *pattern != '\0' && next < digits.size(); ++pattern)
        text += *pattern == '0' ? digits.at(next++) : QLatin1Char(*pattern);
    return text;
}

std::function<void(InputField*)>& theKeypad() {
    static std::function<void(InputField*)> keypad;
    return keypad;
}

}  // namespace

void InputField::setKeypad(std::function<void(InputField*)> keypad) {
    theKeypad() = std::move(keypad);
}

InputField::InputField(QWidget* parent) : WidgetButton(parent) {
    setObjectName(QStringLiteral("InputField"));
    connect(this, &WidgetButton::touched, this, [this] {
        if (theKeypad())
            theKeypad()(this);
    });
}

QString InputField::text() const {
    const char* pattern = patternOf(allowed_);
    return pattern != nullptr ? withSigns(typed_, pattern) : typed_;
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
    const char* pattern = patternOf(allowed_);
    return pattern != nullptr ? qMin(maxLength_, QByteArray(pattern).count('0')) : maxLength_;
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

void InputField::setWide(bool wide) {
    wide_ = wide;
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
    startsOver_ = editing_ && patternOf(allowed_) != nullptr && typed_.size() == maxLength();
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
    return {patternOf(allowed_) != nullptr ? 172 : wide_ ? 428 : 232, 56};
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
        case Date:
        case Time:
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

void InputField::drawCaret(QPainter* painter, int end) const {
    painter->fillRect(end + 1, (height() - kCaretHeight) / 2, 2, kCaretHeight,
                      Theme::color(Theme::kAccent));
}

void InputField::paintEvent(QPaintEvent*) {
    QPainter painter(this);
    const bool focused = editing_ && isEnabled();
    drawField(&painter, rect(), isDown(), focused);

    ScriptHandler::Script shown = placeholder_.entry();
    const bool empty = typed_.isEmpty() && preedit_.isEmpty();
    const QRgb ink = !isEnabled() ? Theme::kOff : empty ? Theme::kHint : Theme::kStrong;
    if (patternOf(allowed_) != nullptr) {
        if (!empty)
            shown.script = text();
        TextFit::draw(&painter, rect().adjusted(kPatternPadding, 0, -kPatternPadding, 0),
                      Qt::AlignHCenter, shown, TextFit::kValue, QFont::Normal, ink);
        // A whole one has no end to type at: the next digit starts it over.
        if (focused && typed_.size() < maxLength()) {
            const int textWidth = empty ? 0 : TextFit::width(shown, TextFit::kValue, QFont::Normal);
            drawCaret(&painter, (width() + textWidth) / 2);
        }
        return;
    }

    const TextFit::Rule& rule = empty ? TextFit::kValue : TextFit::kEntered;
    QRect line = rect().adjusted(kPadding, 0, -kPadding, 0);
    if (!empty)
        shown.script = typed_ + preedit_;
    if (!empty && password_) {
        shown.script.fill(QChar(0x2022));
        shown.size = kDotSize;
    }
    const int textWidth = TextFit::width(shown, rule, QFont::Normal);
    if (focused && !empty && textWidth > line.width()) {
        // While it is typed one wants to see its end.
        painter.setClipRect(line);
        line.setLeft(line.right() + 1 - textWidth);
    }
    TextFit::draw(&painter, line, Qt::AlignLeft, shown, rule, QFont::Normal, ink);
    if (!focused)
        return;
    const int end = line.x() + (empty ? 0 : textWidth);
    painter.setClipping(false);
    drawCaret(&painter, end);
    if (!preedit_.isEmpty()) {
        ScriptHandler::Script open = shown;
        open.script = preedit_;
        const int openWidth = TextFit::width(open, rule, QFont::Normal);
        painter.fillRect(end - openWidth, (height() + kCaretHeight) / 2, openWidth, 2,
                         Theme::color(Theme::kAccent));
    }
}
