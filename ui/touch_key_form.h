#pragma once

#include <QPointer>
#include <QVector>
#include <QWidget>

#include "ui/hangul_composer.h"
#include "ui/scripted.h"

class InputField;
class ScrollList;
class TouchKey;

/// The keypad at the bottom of the window. It types into one InputField at a time and has the
/// pages that the field's characters need: digits, or Latin letters, symbols and Hangul.
///
/// While it is open the field is to be seen above it: the list that the field lies in scrolls as
/// far as that takes, and without a list the screen is moved up. GUI thread only.
class TouchKeyForm : public QWidget, public Scripted {
    Q_OBJECT

 public:
    static constexpr int kTop = 478;
    static constexpr int kHeight = 322;

    explicit TouchKeyForm(QWidget* parent);

    /// Goes back to the first page. A syllable being composed becomes part of the text.
    void showInit();
    /// Shows the keypad for @p field, which is told when editing starts and ends. It ends with
    /// done or hide, when the keypad is hidden, or when the field is hidden, disabled or deleted.
    void edit(InputField* field);
    /// The text that the option key types; empty for no such key. Kept until the keypad is hidden.
    void setOption(const QString& text);
    /// Whether a field that takes everything starts with the Hangul page, as at first, or with the
    /// Latin one.
    void setHangulFirst(bool on) { hangulFirst_ = on; }

    void applyScripts(const Lookup& lookup) override;

 protected:
    bool eventFilter(QObject* watched, QEvent* event) override;
    void hideEvent(QHideEvent* event) override;
    void paintEvent(QPaintEvent* event) override;

 private:
    enum Page { Digits, Latin, Symbols, Hangul };
    enum Shift { Off, Once, Locked };

    QVector<Page> pages() const;
    void setPage(Page page);
    void setShift(Shift shift);
    void nextShift();
    void arrange();
    void place(TouchKey* key, const QRect& drawn, int gap);
    int placeInRow(TouchKey* key, int x, int row, int pitch);
    void arrangeDigits();
    void arrangeLetters();
    void arrangeSpaceRow();
    void labelCharacters();
    char shifted(int index) const;

    void type(int index);
    void typeHangul(char key);
    void insert(const QString& text);
    void erase();
    void clear();
    void endSyllable();
    void matchComposition();

    void endEditing();
    void revealField();
    void moveBack();

    QPointer<InputField> field_;
    HangulComposer composer_;
    Page page_ = Digits;
    Shift shift_ = Off;
    bool hangulFirst_ = true;

    QVector<TouchKey*> characters_;
    QVector<TouchKey*> placed_;  // of the page that is up
    QByteArray codes_;           // what the first of characters_ type, without shift
    TouchKey* backspace_;
    TouchKey* clear_;
    TouchKey* done_;
    TouchKey* hide_;
    TouchKey* option_;
    TouchKey* shiftKey_;
    TouchKey* space_;
    TouchKey* dot_;
    TouchKey* symbolsKey_;
    TouchKey* latinKey_;
    TouchKey* hangulKey_;

    // What gives the field its place above the keypad: its list, or else the screen moved up.
    QPointer<ScrollList> list_;
    QPointer<QWidget> moved_;
    int movedBy_ = 0;
};
