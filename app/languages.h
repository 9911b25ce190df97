#pragma once

#include <QObject>
#include <QStringList>

#include "ui/script_handler.h"

/// The language in force: its script, and the fonts that it needs. A language's number is its
/// position in the language list; the settings record keeps it. GUI thread only.
class Languages : public QObject {
    Q_OBJECT

 public:
    /// Installs the fonts and reads the language list. Until a choice is known the first language
    /// is in force.
    explicit Languages(QObject* parent);

    const ScriptHandler& scripts() const { return *scripts_; }
    QStringList titles() const { return scripts_->getLanguageList(); }
    int number() const { return number_; }

    /// Puts the language of the settings in force. Nothing is removed for it.
    void apply(int number);
    /// Changes the language at the user's wish: the display fonts of the third language come or go
    /// with it. A number that the list does not have changes nothing.
    void change(int number);

 signals:
    /// Another script is in force.
    void changed();

 private:
    bool exists(int number) const { return number >= 0 && number < titles().size(); }
    void load(int number);
    void useFamily();

    ScriptHandler* scripts_;
    int number_ = 0;
    bool japaneseFonts_ = false;  // are registered
};
