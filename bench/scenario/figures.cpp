#include "bench/scenario/figures.h"

#include <algorithm>
#include <cstdio>

namespace Figures {

double median(std::vector<double> values) {
    const auto middle = values.begin() + static_cast<std::ptrdiff_t>(values.size() / 2);
    std::nth_element(values.begin(), middle, values.end());
    return *middle;
}

void title(const char* text) {
    std::printf("\n%s\n", text);
}

void row(const char* name, double value, const char* unit, const char* wanted) {
    std::printf("  %-44s %10.3f %-8s %s\n", name, value, unit, wanted);
    std::fflush(stdout);
}

}  // namespace Figures
