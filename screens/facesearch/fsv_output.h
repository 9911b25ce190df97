#pragma once

#include <QLoggingCategory>

Q_DECLARE_LOGGING_CATEGORY(faceSearchLog)

/// Prints to standard output at once, for whoever drives the face search from a console. Any
/// thread.
void fsvPrint(const char* format, ...) __attribute__((format(printf, 1, 2)));

/// Whether that waits for whoever reads it, as at first. A program with more to do than to print
/// rather does without what nobody reads.
void fsvPrintWaits(bool on);
