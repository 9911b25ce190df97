#pragma once

#include <QString>

#include "ui/script_handler.h"

class QLabel;
class QWidget;
class TextEdit;

/// A text with its typography as plain numbers.
struct ss {
    int size;          ///< pixels
    int height;        ///< line height in percent
    int letter;        ///< letter spacing in whole pixels
    const char* text;  ///< UTF-8; null means empty
};

/// Static helpers that give labels their texts and typography. GUI thread only.
class Styler {
 public:
    /// Shows a script entry: its family, size (cut to whole pixels), letter spacing and text as
    /// rich text with the entry's line height. Markup in the text takes effect.
    static void setText(QLabel* label, const ScriptHandler::Script& script);
    /// The same with the application's family.
    static void setText(QLabel* label, const ss& style);
    /// Prepares @p label as setText() does, but returns the rich text instead of setting it.
    static QString getText(QLabel* label, const ss& style);
    /// Only the font; text and format stay.
    static void setFont(QLabel* label, const ss& style);
    /// Kept without effect.
    static void setText(TextEdit* edit, const ss& style);
    /// Kept without effect.
    static void getBetweenTime(QString text, QString* from, QString* to);
    /// Sets the property @p name in every line of the widget's style sheet that holds it; when
    /// none does and @p addIfMissing is set, appends it.
    static void setStyleSheet(QWidget* widget, QString name, QString value, bool addIfMissing);
};

/// Wraps text in a paragraph with a line height of its own, for texts made of several pieces.
class StylerFont {
 public:
    /// @p lineHeight is used as it is, so it may carry a unit.
    explicit StylerFont(QString lineHeight);
    QString getHtml(const QString& text) const;

 private:
    QString lineHeight_;
};
