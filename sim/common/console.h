#pragma once

#include "sim/common/control_port.h"

class QObject;

/// Standard input as a source of words; the answers go to standard output.
class Console {
 public:
    /// To be made first in main(): where there is no standard input, its number goes to the next
    /// thing that is opened.
    Console();

    /// Gives each line to @p executor as long as @p context lives. The end of the input is not the
    /// end of the program, which may run in the background.
    void read(const ControlPort::Executor& executor, QObject* context) const;

 private:
    const bool open_;
};
