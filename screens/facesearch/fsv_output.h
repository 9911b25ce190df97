#pragma once

#include <QLoggingCategory>

Q_DECLARE_LOGGING_CATEGORY(faceSearchLog)

/// Prints to standard output at once, for whoever drives the face search from a console. Any
/// thread.
void fsvPrint(const char* format, ...) __attribute__((format(printf, 1, 2)));
