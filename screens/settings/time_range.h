#pragma once

#include <QString>

#include "link/device_records.h"

/// Time of day ranges as the settings of attendance and meals edit them.
namespace TimeRange {

/// What getBetweenTime() found.
enum Reading { OutOfRange = -1, Malformed = 0, Valid = 1 };

/// Reads @p text, "hh:mm~hh:mm", into @p range, which is only changed when the text is Valid.
///
/// Hours reach up to 24, as 24:00 is the end of a day. A text of less than 11 characters is
/// Malformed; a piece that is missing between the signs counts 0. What is there must be digits 0
/// to 9: a digit of another script, or anything behind the last piece, makes the text Malformed
/// rather than a time that nobody typed.
Reading getBetweenTime(const QString& text, _byte4_time_se_* range);

/// @p range as text, the form that getBetweenTime() reads.
QString betweenTimeText(const _byte4_time_se_& range);

/// Minutes since midnight.
int TimeToMin(int hour, int minute);

/// Whether the two ranges can stand beside each other: 1 when they have no minute in common, 0
/// when they overlap or one of them is empty. A range may reach across midnight, but not both.
/// Ranges that touch do not overlap.
int CheckTime(const _byte4_time_se_& a, const _byte4_time_se_& b);

}  // namespace TimeRange
