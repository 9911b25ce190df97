#pragma once

#include "ui/scripted.h"

/// A text of a widget: that of a script key, or one set at run time in the typography of the key.
class ScriptText {
 public:
    const QString& key() const { return key_; }
    void setKey(const QString& key) { key_ = key; }

    const QString& text() const { return entry_.script; }
    void setText(const QString& text) { entry_.script = text; }
    void setEntry(const ScriptHandler::Script& entry) { entry_ = entry; }
    void setFamily(const QString& family) { entry_.fontFamily = family; }

    /// The text with its typography.
    const ScriptHandler::Script& entry() const { return entry_; }
    bool isEmpty() const { return entry_.script.isEmpty(); }

    /// Takes the key's entry; without a key only the language's typeface.
    void apply(const Scripted::Lookup& lookup) {
        ScriptHandler::Script entry = lookup(key_);
        if (key_.isEmpty())
            entry_.fontFamily = entry.fontFamily;
        else
            entry_ = std::move(entry);
    }

 private:
    QString key_;
    ScriptHandler::Script entry_;
};
