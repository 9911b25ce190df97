#include "base/descriptors.h"

#include <sys/resource.h>

#include <algorithm>
#include <limits>

void Descriptors::raiseLimit() {
    rlimit now{};
    if (::getrlimit(RLIMIT_NOFILE, &now) != 0)
        return;
    now.rlim_cur = now.rlim_max;
    ::setrlimit(RLIMIT_NOFILE, &now);
}

int Descriptors::limit() {
    rlimit now{};
    if (::getrlimit(RLIMIT_NOFILE, &now) != 0)
        return 0;
    return static_cast<int>(std::min<rlim_t>(now.rlim_cur, std::numeric_limits<int>::max()));
}
