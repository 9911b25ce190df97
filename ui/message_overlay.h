#pragma once

#include <QStringList>

#include "ui/dialog_overlay.h"
#include "ui/scripted.h"

class QLabel;

/// A dialog that says something: a picture, a text and a second line below it. Texts that are
/// given by their keys are those of the language in force, also when that changes while the dialog
/// is open.
class MessageOverlay : public DialogOverlay, public Scripted {
    Q_OBJECT
    Q_PROPERTY(QString textKey READ textKey WRITE setTextKey)
    Q_PROPERTY(QStringList textKeys READ textKeys WRITE setTextKeys)
    Q_PROPERTY(QString secondTextKey READ secondTextKey WRITE setSecondTextKey)

 public:
    explicit MessageOverlay(QWidget* parent, DialogRank rank = DialogRank::Message);

    /// Where all dialogs look their keys up; an empty function ends it.
    static void setScripts(Lookup lookup);
    /// Gives what is open in @p widget's window the texts of a new language.
    static void scriptsChanged(const QWidget* widget);

    /// The text, wrapped. It may hold markup; line feeds break lines. It has no key any more.
    void setText(const ScriptHandler::Script& script);
    QString textKey() const { return textKeys_.value(0); }
    /// The same by its key; @p argument stands in for its "%1".
    void setTextKey(const QString& key) { setTextKey(key, {}); }
    void setTextKey(const QString& key, const QString& argument);
    const QStringList& textKeys() const { return textKeys_; }
    /// Several texts, each on a line of its own.
    void setTextKeys(const QStringList& keys);
    /// A smaller line below the text; an empty one takes no place.
    void setSecondText(const ScriptHandler::Script& script);
    const QString& secondTextKey() const { return secondTextKey_; }
    void setSecondTextKey(const QString& key);

    void applyScripts(const Lookup& lookup) override;

 protected:
    /// Takes the texts of all keys from where dialogs look them up.
    void applyScripts();
    void opened() override;
    /// Places the texts and, above them, @p picture (72 by 72 pixels) unless it is hidden. Returns
    /// where the last of them ends.
    int arrangeMessage(QWidget* picture);
    /// The typeface of the text.
    QString family() const;

 private:
    void setLine(QLabel* line, ScriptHandler::Script script);

    QLabel* text_;
    QLabel* secondText_;
    QStringList textKeys_;
    QString textArgument_;
    QString secondTextKey_;
};
