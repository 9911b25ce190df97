#include "ui/touch_key_form.h"

#include <QHideEvent>
#include <QPainter>

#include "ui/input_field.h"
#include "ui/scroll_list.h"
#include "ui/theme.h"
#include "ui/touch_key.h"

namespace {

constexpr int kTopPad = 10;  // with the hairline
constexpr int kKeyHeight = 70;
constexpr int kRowGap = 8;
constexpr int kRowPitch = kKeyHeight + kRowGap;

constexpr int kDigitWidth = 110;
constexpr int kDigitGap = 8;
constexpr int kDigitPad = 8;

// Ten letters fill the width: each takes 48 pixels of it and is drawn on 42.
constexpr int kLetterPitch = 48;
constexpr int kLetterGap = 6;
constexpr int kWidePitch = 72;  // shift, backspace, option
constexpr int kSidePitch = 60;  // the other keys beside the space bar
constexpr int kDonePitch = 96;

/// A key this near to the edge of the keypad is sensitive up to the edge.
constexpr int kReach = 30;
constexpr int kFieldMargin = 12;

constexpr int kLetterRows = 3;
constexpr char kLetters[kLetterRows][11] = {"qwertyuiop", "asdfghjkl", "zxcvbnm"};
constexpr char kSymbols[kLetterRows][11] = {"1234567890", "@#%&*-+=()", "_/:;!?,"};
constexpr char kMoreSymbols[kLetterRows][11] = {"1234567890", "[]{}<>^~|\\", "$`'\""};
constexpr char kDigits[] = "1234567890";
constexpr int kMostCharacters = 27;

int rowTop(int row) {
    return kTopPad + row * kRowPitch;
}

QRect digitCell(int column, int row, int rows = 1) {
    return {kDigitPad + column * (kDigitWidth + kDigitGap), rowTop(row), kDigitWidth,
            rows * kRowPitch - kRowGap};
}

}  // namespace

TouchKeyForm::TouchKeyForm(QWidget* parent) : QWidget(parent) {
    setObjectName(QStringLiteral("touchKeyForm"));
    setAttribute(Qt::WA_OpaquePaintEvent);
    setAttribute(Qt::WA_NoMousePropagation);
    setGeometry(0, kTop, Theme::kScreenWidth, kHeight);
    hide();

    for (int i = 0; i < kMostCharacters; ++i) {
        auto* key = new TouchKey(this, TouchKey::Letter);
        connect(key, &TouchKey::touched, this, [this, i] { type(i); });
        characters_.append(key);
    }
    const auto add = [this](const char* name, TouchKey::Look look, auto action) {
        auto* key = new TouchKey(this, look);
        key->setObjectName(QLatin1String(name));
        connect(key, &TouchKey::touched, this, action);
        return key;
    };
    backspace_ = add("key_backspace", TouchKey::Function, [this] { erase(); });
    backspace_->setPicture(QStringLiteral("backspace.png"));
    backspace_->setAutoRepeat(true);
    clear_ = add("key_clear", TouchKey::Function, [this] { clear(); });
    done_ = add("key_done", TouchKey::Primary, [this] {
        const QPointer<InputField> field = field_;
        hide();
        if (field)
            emit field->doneTouched();
    });
    hide_ = add("key_hide", TouchKey::Function, [this] { hide(); });
    hide_->setPicture(QStringLiteral("keypad_hide.png"));
    option_ = add("key_option", TouchKey::Function, [this] { insert(option_->text()); });
    shiftKey_ = add("key_shift", TouchKey::Function, [this] { nextShift(); });
    space_ = add("key_space", TouchKey::Letter, [this] { insert(QStringLiteral(" ")); });
    space_->setPicture(QStringLiteral("space.png"));
    dot_ = add("key_.", TouchKey::Letter, [this] { insert(QStringLiteral(".")); });
    dot_->setText(QStringLiteral("."));
    symbolsKey_ = add("key_symbols", TouchKey::Function, [this] { setPage(Symbols); });
    symbolsKey_->setText(QStringLiteral("!#1"));
    latinKey_ = add("key_latin", TouchKey::Function, [this] { setPage(Latin); });
    latinKey_->setText(QStringLiteral("ABC"));
    hangulKey_ = add("key_hangul", TouchKey::Function, [this] { setPage(Hangul); });
    hangulKey_->setText(QStringLiteral("가"));
    showInit();
}

void TouchKeyForm::showInit() {
    setPage(pages().first());
}

void TouchKeyForm::edit(InputField* field) {
    if (field != field_) {
        endEditing();
        field_ = field;
        field->setEditing(true);
        field->installEventFilter(this);
        connect(field, &QObject::destroyed, this, [this] {
            field_.clear();  // it is no InputField any more
            hide();
        });
    }
    showInit();
    raise();
    show();
    revealField();
}

void TouchKeyForm::setOption(const QString& text) {
    if (option_->text() == text)
        return;
    option_->setText(text);
    arrange();
}

void TouchKeyForm::applyScripts(const Lookup& lookup) {
    done_->setScript(lookup(QStringLiteral("Button_KeypadDone")));
    clear_->setScript(lookup(QStringLiteral("Button_KeypadClear")));
    const QString family = lookup(QString()).fontFamily;
    const auto keys = findChildren<TouchKey*>();
    for (TouchKey* key : keys)
        key->setFamily(family);
}

bool TouchKeyForm::eventFilter(QObject* watched, QEvent* event) {
    const bool disabled = event->type() == QEvent::EnabledChange && !field_->isEnabled();
    if (event->type() == QEvent::Hide || disabled)
        hide();
    return QWidget::eventFilter(watched, event);
}

void TouchKeyForm::hideEvent(QHideEvent* event) {
    if (!event->spontaneous()) {
        endEditing();
        // Whoever brings it up again arranges the keys.
        option_->setText(QString());
    }
    QWidget::hideEvent(event);
}

void TouchKeyForm::paintEvent(QPaintEvent*) {
    QPainter painter(this);
    painter.fillRect(rect(), Theme::color(Theme::kBar));
    painter.fillRect(0, 0, width(), 1, Theme::color(Theme::kLine));
}

/// The pages for the field, the one to start with first.
QVector<TouchKeyForm::Page> TouchKeyForm::pages() const {
    if (!field_)
        return {Digits};
    switch (field_->allowedCharacters()) {
        case InputField::Any:
            return hangulFirst_ ? QVector<Page>{Hangul, Latin, Symbols}
                                : QVector<Page>{Latin, Hangul, Symbols};
        case InputField::Latin:
            return {Latin, Symbols};
        case InputField::Digits:
        case InputField::Address:
        case InputField::TimeRange:
        case InputField::Date:
        case InputField::Time:
            break;
    }
    return {Digits};
}

void TouchKeyForm::setPage(Page page) {
    endSyllable();
    page_ = page;
    setShift(Off);
}

void TouchKeyForm::setShift(Shift shift) {
    shift_ = shift;
    if (page_ == Symbols) {
        shiftKey_->setPicture(QString());
        shiftKey_->setText(shift_ == Off ? QStringLiteral("1/2") : QStringLiteral("2/2"));
    } else {
        shiftKey_->setPicture(shift_ == Locked ? QStringLiteral("shift_lock.png")
                                               : QStringLiteral("shift.png"));
    }
    shiftKey_->setSelected(shift_ != Off && page_ != Symbols);
    arrange();
}

void TouchKeyForm::nextShift() {
    if (shift_ == Locked)
        setShift(Off);
    else
        setShift(shift_ == Off && page_ != Symbols ? Once : Locked);
}

void TouchKeyForm::arrange() {
    placed_.clear();
    if (page_ == Digits)
        arrangeDigits();
    else
        arrangeLetters();
    // Most pages follow one with the same keys: nothing is hidden only to be shown again.
    const auto keys = findChildren<TouchKey*>();
    for (TouchKey* key : keys)
        key->setVisible(placed_.contains(key));
}

void TouchKeyForm::place(TouchKey* key, const QRect& drawn, int gap) {
    QRect sensitive = drawn.adjusted(-gap / 2, -kRowGap / 2, gap / 2, kRowGap / 2);
    if (drawn.left() < kReach)
        sensitive.setLeft(0);
    if (Theme::kScreenWidth - drawn.right() <= kReach)
        sensitive.setRight(Theme::kScreenWidth - 1);
    key->place(drawn, sensitive);
    placed_.append(key);
}

/// Places @p key from @p x on and returns where the next key goes.
int TouchKeyForm::placeInRow(TouchKey* key, int x, int row, int pitch) {
    place(key, {x + kLetterGap / 2, rowTop(row), pitch - kLetterGap, kKeyHeight}, kLetterGap);
    return x + pitch;
}

void TouchKeyForm::arrangeDigits() {
    codes_ = kDigits;
    for (int i = 0; i < codes_.size(); ++i) {
        characters_[i]->setLook(TouchKey::Digit);
        const QRect cell = i < 9 ? digitCell(i % 3, i / 3) : digitCell(1, 3);
        place(characters_[i], cell, kDigitGap);
    }
    place(backspace_, digitCell(3, 0), kDigitGap);
    place(clear_, digitCell(3, 1), kDigitGap);
    place(done_, digitCell(3, 2, 2), kDigitGap);
    place(hide_, digitCell(2, 3), kDigitGap);
    if (!option_->text().isEmpty())
        place(option_, digitCell(0, 3), kDigitGap);
    else if (field_ && field_->allowedCharacters() == InputField::Address)
        place(dot_, digitCell(0, 3), kDigitGap);
    labelCharacters();
}

void TouchKeyForm::arrangeLetters() {
    const auto& rows = page_ != Symbols ? kLetters : shift_ == Off ? kSymbols : kMoreSymbols;
    codes_.clear();
    for (int row = 0; row < kLetterRows; ++row) {
        const QByteArray codes = rows[row];
        const bool last = row == kLetterRows - 1;
        const int room = Theme::kScreenWidth - (last ? 2 * kWidePitch : 0);
        const int pitch = last ? room / codes.size() : kLetterPitch;
        int x = (Theme::kScreenWidth - codes.size() * pitch) / 2;
        if (last)
            placeInRow(shiftKey_, 0, row, kWidePitch);
        for (int i = 0; i < codes.size(); ++i) {
            TouchKey* key = characters_[codes_.size() + i];
            key->setLook(TouchKey::Letter);
            x = placeInRow(key, x, row, pitch);
        }
        if (last)
            placeInRow(backspace_, x, row, kWidePitch);
        codes_ += codes;
    }
    labelCharacters();
    arrangeSpaceRow();
}

void TouchKeyForm::arrangeSpaceRow() {
    const int row = kLetterRows;
    const QVector<Page> offered = pages();
    int x = 0;
    const struct {
        TouchKey* key;
        Page page;
    } pageKeys[] = {{symbolsKey_, Symbols}, {latinKey_, Latin}, {hangulKey_, Hangul}};
    for (const auto& [key, page] : pageKeys)
        if (page != page_ && offered.contains(page))
            x = placeInRow(key, x, row, kSidePitch);
    if (!option_->text().isEmpty())
        x = placeInRow(option_, x, row, kWidePitch);
    const int right = kLetterPitch + kSidePitch + kDonePitch;
    x = placeInRow(space_, x, row, Theme::kScreenWidth - right - x);
    x = placeInRow(dot_, x, row, kLetterPitch);
    x = placeInRow(hide_, x, row, kSidePitch);
    placeInRow(done_, x, row, kDonePitch);
}

void TouchKeyForm::labelCharacters() {
    const auto letter = [this](char code) {
        return page_ == Hangul ? HangulComposer::letter(code) : QString(QLatin1Char(code));
    };
    for (int i = 0; i < codes_.size(); ++i) {
        characters_[i]->setObjectName(QLatin1String("key_") + letter(codes_[i]));
        characters_[i]->setText(letter(shifted(i)));
    }
}

char TouchKeyForm::shifted(int index) const {
    const char code = codes_[index];
    return shift_ != Off && code >= 'a' && code <= 'z' ? code - 'a' + 'A' : code;
}

void TouchKeyForm::type(int index) {
    if (page_ == Hangul)
        typeHangul(shifted(index));
    else
        insert(characters_[index]->text());
    if (shift_ == Once)
        setShift(Off);
}

void TouchKeyForm::typeHangul(char key) {
    if (!field_)
        return;
    matchComposition();
    const QString completed = composer_.type(key);
    const QString open = composer_.preedit();
    if (!field_->setPreedit(completed + open)) {
        composer_.undo();  // there is no room
        return;
    }
    if (!completed.isEmpty()) {
        field_->insert(completed);
        field_->setPreedit(open);
    }
}

void TouchKeyForm::insert(const QString& text) {
    endSyllable();
    if (field_)
        field_->insert(text);
}

void TouchKeyForm::erase() {
    if (!field_)
        return;
    matchComposition();
    if (composer_.backspace())
        field_->setPreedit(composer_.preedit());
    else
        field_->backspace();
}

void TouchKeyForm::clear() {
    if (field_)
        field_->clear();
}

/// The field drops the open syllable when its text is replaced.
void TouchKeyForm::matchComposition() {
    if (composer_.preedit() != field_->preedit())
        composer_.flush();
}

void TouchKeyForm::endSyllable() {
    composer_.flush();
    if (field_)
        field_->insert(field_->preedit());
}

void TouchKeyForm::moveBack() {
    if (list_)
        list_->setCoveredHeight(0);
    list_.clear();
    if (moved_)
        moved_->move(moved_->x(), moved_->y() + movedBy_);
    moved_.clear();
}

void TouchKeyForm::endEditing() {
    moveBack();
    composer_.flush();
    InputField* field = field_;
    if (!field)
        return;
    field_.clear();
    field->removeEventFilter(this);
    disconnect(field, nullptr, this, nullptr);
    field->setEditing(false);
}

void TouchKeyForm::revealField() {
    moveBack();  // the field may be touched again while it is being edited
    for (QWidget* up = field_; up != nullptr && !list_; up = up->parentWidget())
        list_ = qobject_cast<ScrollList*>(up);
    if (list_) {
        const int end = list_->mapTo(parentWidget(), QPoint(0, list_->height())).y();
        list_->setCoveredHeight(qMax(end - y(), 0));
        list_->reveal(field_);
        return;
    }
    const int end = field_->mapTo(parentWidget(), QPoint(0, field_->height())).y() + kFieldMargin;
    movedBy_ = qMin(end - y(), height());
    if (movedBy_ <= 0)
        return;
    moved_ = field_;
    while (moved_->parentWidget() != parentWidget())
        moved_ = moved_->parentWidget();
    moved_->move(moved_->x(), moved_->y() - movedBy_);
}
