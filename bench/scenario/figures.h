#pragma once

#include <vector>

/// How the scenarios print what they have measured.
namespace Figures {

/// The middle one of @p values, which must not be empty.
double median(std::vector<double> values);

void title(const char* text);
/// One line: @p name, @p value in @p unit, and what is hoped for, if anything.
void row(const char* name, double value, const char* unit, const char* wanted = "");

}  // namespace Figures
