#pragma once

#include <functional>

#include "ui/script_text.h"
#include "ui/widget_button.h"

/// A field whose text is typed on the terminal's own keypad, which a touch on it brings up.
/// Whoever shows the keypad marks the field as being edited and types into it. Typing always
/// happens at the end of the text.
class InputField : public WidgetButton, public Scripted {
    Q_OBJECT
    Q_PROPERTY(QString text READ text WRITE setText NOTIFY textChanged)
    Q_PROPERTY(QString placeholderKey READ placeholderKey WRITE setPlaceholderKey)
    Q_PROPERTY(int maxLength READ maxLength WRITE setMaxLength)
    Q_PROPERTY(Characters allowedCharacters READ allowedCharacters WRITE setAllowedCharacters)
    Q_PROPERTY(bool wide READ isWide WRITE setWide)
    Q_PROPERTY(bool passwordMode READ passwordMode WRITE setPasswordMode)

 public:
    enum Characters {
        Any,        ///< every printable character, Hangul included
        Latin,      ///< printable ASCII
        Digits,     ///< 0 to 9
        Address,    ///< 0 to 9 and the dot
        TimeRange,  ///< 0 to 9, shown and read as "hh:mm~hh:mm"; eight digits at most
        Date,       ///< 0 to 9, shown and read as "yyyy-MM-dd"; eight digits at most
        Time,       ///< 0 to 9, shown and read as "hh:mm"; four digits at most
    };
    Q_ENUM(Characters)

    explicit InputField(QWidget* parent = nullptr);

    /// Who opens the keypad for any field that is touched; an empty function ends it.
    static void setKeypad(std::function<void(InputField*)> keypad);

    /// The text; of a time range or date with its signs as far as it is typed.
    QString text() const;
    /// Replaces the text by the allowed characters of @p text, cut at the maximum length.
    void setText(const QString& text);
    /// Appends the allowed characters of @p text, as far as there is room. The first ones typed
    /// into a whole time, range or date since the keypad came up take its place.
    void insert(const QString& text);
    /// Takes the composition away, or else the last character.
    void backspace();
    void clear();

    /// Characters still being composed: shown underlined behind the text, but not part of text().
    QString preedit() const { return preedit_; }
    /// False, and no change, when there is no room for it or it is not allowed.
    bool setPreedit(const QString& preedit);

    const QString& placeholderKey() const { return placeholder_.key(); }
    void setPlaceholderKey(const QString& key) { placeholder_.setKey(key); }
    /// In UTF-16 units; of a time, range or date in digits, at most as many as it has.
    int maxLength() const;
    void setMaxLength(int length);
    Characters allowedCharacters() const { return allowed_; }
    void setAllowedCharacters(Characters characters);
    /// Wide enough for a long text: a ListRow gives it a line of its own.
    bool isWide() const { return wide_; }
    void setWide(bool wide);
    /// Shows a dot for each character.
    bool passwordMode() const { return password_; }
    void setPasswordMode(bool password);

    /// Whether the keypad types into this field now; it has an accent border then.
    bool isEditing() const { return editing_; }
    /// At the end of editing an open composition becomes part of the text.
    void setEditing(bool editing);

    void applyScripts(const Lookup& lookup) override;
    QSize sizeHint() const override;

 signals:
    void textChanged(const QString& text);
    /// The keypad is done with it.
    void editingFinished();
    /// The keypad's own key for that was touched.
    void doneTouched();

 protected:
    void paintEvent(QPaintEvent* event) override;

    /// The typeface of the language in force.
    const QString& family() const { return placeholder_.entry().fontFamily; }

 private:
    bool accepts(uint character) const;
    QString filtered(const QString& text, int room) const;
    void setTyped(const QString& typed);
    /// Behind a text that ends at @p end.
    void drawCaret(QPainter* painter, int end) const;

    QString typed_;
    QString preedit_;
    ScriptText placeholder_;
    int maxLength_ = 32;
    Characters allowed_ = Any;
    bool wide_ = false;
    bool password_ = false;
    bool editing_ = false;
    bool startsOver_ = false;
};
