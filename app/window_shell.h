#pragma once

#include "ui/script_handler.h"

class InputField;

/// What every screen needs of the shell around it. The main window implements it; screens that
/// need more ask the main window itself. GUI thread only.
class WindowShell {
 public:
    virtual ScriptHandler::Script getScript(const QString& key) const = 0;
    /// Grows with every change of language.
    virtual int scriptRevision() const = 0;
    /// Opens the keypad for @p field.
    virtual void showTouchKey(InputField* field) = 0;
    virtual void removeTouchKey() = 0;

 protected:
    ~WindowShell() = default;
};
