#pragma once

#include "ui/script_handler.h"
#include "ui/widget_button.h"

/// One key of the keypad. It is a little larger than it is drawn, so that no touch between two keys
/// is lost.
class TouchKey : public WidgetButton {
    Q_OBJECT

 public:
    enum Look {
        Digit,
        Letter,
        Function,  ///< holds a word or a picture and steps back behind the characters
        Primary,
    };

    TouchKey(QWidget* parent, Look look);

    void setLook(Look look);
    const QString& text() const { return text_.script; }
    void setText(const QString& text);
    void setFamily(const QString& family);
    /// The text with its typography.
    void setScript(const ScriptHandler::Script& script);
    /// A picture of Pictures::icon() in the place of the text.
    void setPicture(const QString& name);
    /// @p drawn and @p sensitive are in the parent's coordinates.
    void place(const QRect& drawn, const QRect& sensitive);

 protected:
    void paintEvent(QPaintEvent* event) override;

 private:
    ScriptHandler::Script text_;
    QString picture_;
    QRect drawn_;
    Look look_;
};
