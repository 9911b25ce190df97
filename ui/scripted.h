#pragma once

#include <functional>

#include "ui/script_handler.h"

class QWidget;

/// A widget that shows texts of the language scripts. It holds keys (usually set in its form) and
/// is given the texts when its screen is shown and the language is new to it.
class Scripted {
 public:
    using Lookup = std::function<ScriptHandler::Script(const QString& key)>;

    virtual ~Scripted() = default;
    /// Takes the texts of all its keys from @p lookup.
    virtual void applyScripts(const Lookup& lookup) = 0;

    /// Gives every Scripted widget below @p root its texts, and every QLabel with a dynamic
    /// property "scriptKey" the text of that key, through Styler.
    static void applyBelow(QWidget* root, const Lookup& lookup);
};
