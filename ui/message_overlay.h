#pragma once

#include "ui/dialog_overlay.h"
#include "ui/script_handler.h"

class QLabel;

/// A dialog that says something: a picture, a text and a second line below it.
class MessageOverlay : public DialogOverlay {
    Q_OBJECT

 public:
    explicit MessageOverlay(QWidget* parent);

    /// The text, wrapped. It may hold markup; line feeds break lines.
    void setText(const ScriptHandler::Script& script);
    /// A smaller line below the text; an empty one takes no place.
    void setSecondText(const ScriptHandler::Script& script);

 protected:
    /// Places the texts and, above them, @p picture (72 by 72 pixels) unless it is hidden. Returns
    /// where the last of them ends.
    int arrangeMessage(QWidget* picture);
    /// The typeface of the text.
    QString family() const;

 private:
    void setLine(QLabel* line, ScriptHandler::Script script);

    QLabel* text_;
    QLabel* secondText_;
};
