#include "app/capi.h"

#include <time.h>
#include <unistd.h>

#include <cerrno>
#include <cstdlib>

namespace {

struct Variable {
    const char* name;
    const char* value;
};

// The panel is 480 by 800, portrait. The last name lacks its final T: that is how the board's
// images have always spelled it.
constexpr Variable kDisplay[] = {
    {"QT_QWS_FONTDIR", "/usr/lib/fonts"},
    {"QT_LIB", "/usr/lib"},
    {"QT_QPA_PLATFORM", "eglfs"},
    {"QT_QPA_EGLFS_FB", "/dev/fb0"},
    {"QT_QPA_EVDEV_TOUCHSCREEN_PARAMETERS", "/dev/input/event0"},
    {"QT_EGLFS_IMX6_NO_FB_MULTI_BUFFER", "1"},
    {"QT_QPA_EGLFS_DEPTH", "24"},
    {"QT_QPA_EGLFS_WIDTH", "480"},
    {"QT_QPA_EGLFS_HEIGHT", "800"},
    {"QT_QPA_EGLFS_PHYSICAL_WIDTH", "480"},
    {"QT_QPA_EGLFS_PHYSICAL_HEIGH", "800"},
};

}  // namespace

int CAPI::setEnv() {
    for (const Variable& variable : kDisplay)
        ::setenv(variable.name, variable.value, 1);
    return 0;
}

void CAPI::sleep(int ms) {
    if (ms <= 0) {
        ::usleep(0);
        return;
    }
    timespec remaining{ms / 1000, (ms % 1000) * 1000000L};
    while (::nanosleep(&remaining, &remaining) != 0 && errno == EINTR) {
    }
}
