#pragma once

#include <QDateTime>

/// The time of day that the terminal shows.
namespace Clock {

/// The machine's local time, or the time it was fixed at.
QDateTime now();

/// Stops the clock at @p time, for pictures and tests; an invalid time lets it go on. GUI thread.
void fix(const QDateTime& time);

}  // namespace Clock
