#pragma once

#include <initializer_list>

/// Termination signals as an orderly quit.
///
/// The handler wakes the event loop through a pipe and prints a line if somebody reads it, nothing
/// more: neither printing through stdio nor talking to Qt is safe there. The quit itself happens in
/// the GUI thread, also for a signal that came before the event loop ran.

/// Holds the listed signals back until catchUnixSignals() is called for them, so that one that
/// comes while the process is still starting is not lost and does not kill it half-made. Threads
/// started meanwhile never take these signals.
void holdUnixSignals(std::initializer_list<int> numbers);

/// Installs the quit handler for every listed signal, each with a mask of all of them, and lets
/// held ones through. To be called in the GUI thread once the application object exists.
void catchUnixSignals(std::initializer_list<int> numbers);

/// Sets every listed signal to be ignored.
void ignoreUnixSignals(std::initializer_list<int> numbers);
