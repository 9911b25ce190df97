#pragma once

#include <QDateTime>
#include <optional>

#include "link/device_records.h"
#include "link/record_values.h"

/// What the controller makes of the stored periods.
namespace work {

/// Operating modes as they stand in logs.
enum Mode { AccessOnly = 0, In = 1, Out = 2, Break = 3, Return = 5, Breakfast = 6, Supper = 9 };

/// The status number reported at @p now: 1 to 4 for the attendance event or the meal in force, 0
/// outside of every period.
int statusAt(const _gui_menu_& settings, const QDateTime& now);

/// The operating mode that a status number stands for.
int modeOf(const _gui_menu_& settings, int status);

/// When statusAt() may next have another value, at most a day ahead.
QDateTime nextChange(const _gui_menu_& settings, const QDateTime& now);

/// Whether @p time lies in the range. An empty range contains nothing.
bool contains(const _byte4_time_se_& range, const QTime& time);

/// The period of meal mode @p mode, Breakfast to Supper.
const _byte4_time_se_& mealPeriod(const _gui_menu_& settings, int mode);

/// When the range last began, at or before @p now.
QDateTime lastBeginning(const _byte4_time_se_& range, const QDateTime& now);

/// Reads "hh:mm~hh:mm"; nothing when it is something else or no time of day.
std::optional<_byte4_time_se_> parseRange(const QString& text);

}  // namespace work
