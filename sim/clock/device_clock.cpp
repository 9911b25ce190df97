// The device has one clock, which the controller sets and the terminal reads. On a developer's
// machine nobody may set the clock, so ./run preloads this into the terminal's program: the time of
// day is then the machine's moved as the file $ZEL_DEVICE_CLOCK says. "+90" or "-90" puts it so
// many seconds ahead, "1772000000" stops it there. The file may be replaced at any time. Clocks
// that measure how long something takes are left alone, and programs that the terminal starts too.

#include <dlfcn.h>
#include <fcntl.h>
#include <limits.h>
#include <sys/syscall.h>
#include <sys/time.h>
#include <time.h>
#include <unistd.h>

#include <atomic>
#include <cerrno>
#include <cstdlib>
#include <cstring>

namespace {

using ClockGettime = int (*)(clockid_t, timespec*);

/// How old what the file said may be, in milliseconds.
constexpr long long kInterval = 100;

std::atomic<ClockGettime> machineClock{nullptr};
char path[PATH_MAX];
std::atomic<long long> readAt{-kInterval};  // milliseconds of the monotonic clock
std::atomic<long long> seconds{0};
std::atomic<bool> stopped{false};

int readMachineClock(clockid_t clock, timespec* time) {
    const ClockGettime known = machineClock.load();
    return known != nullptr ? known(clock, time)
                            : static_cast<int>(::syscall(SYS_clock_gettime, clock, time));
}

void readFile() {
    const int file = ::open(path, O_RDONLY | O_CLOEXEC);
    if (file < 0)
        return;
    char text[32] = {};
    if (::read(file, text, sizeof text - 1) > 0) {
        seconds = std::strtoll(text, nullptr, 10);
        stopped = text[0] != '+' && text[0] != '-';
    }
    ::close(file);
}

void moveTimeOfDay(timespec* time) {
    const int before = errno;
    timespec now{};
    readMachineClock(CLOCK_MONOTONIC, &now);
    const long long present = now.tv_sec * 1000LL + now.tv_nsec / 1000000;
    long long last = readAt.load();
    if (present - last >= kInterval && readAt.compare_exchange_strong(last, present))
        readFile();
    if (stopped)
        *time = {};
    time->tv_sec += static_cast<time_t>(seconds.load());
    errno = before;
}

__attribute__((constructor)) void begin() {
    if (const char* file = std::getenv("ZEL_DEVICE_CLOCK"))
        std::strncpy(path, file, sizeof path - 1);
    ::unsetenv("ZEL_DEVICE_CLOCK");
    ::unsetenv("LD_PRELOAD");
    machineClock = reinterpret_cast<ClockGettime>(::dlsym(RTLD_NEXT, "clock_gettime"));
}

}  // namespace

extern "C" {

int clock_gettime(clockid_t clock, timespec* time) noexcept {
    const int result = readMachineClock(clock, time);
    if (result == 0 && (clock == CLOCK_REALTIME || clock == CLOCK_REALTIME_COARSE))
        moveTimeOfDay(time);
    return result;
}

int gettimeofday(timeval* time, void* zone) noexcept {
    if (zone != nullptr)
        std::memset(zone, 0, sizeof(struct timezone));
    timespec now{};
    if (time == nullptr || clock_gettime(CLOCK_REALTIME, &now) != 0)
        return time == nullptr ? 0 : -1;
    time->tv_sec = now.tv_sec;
    time->tv_usec = static_cast<suseconds_t>(now.tv_nsec / 1000);
    return 0;
}

time_t time(time_t* result) noexcept {
    timespec now{};
    clock_gettime(CLOCK_REALTIME, &now);
    if (result != nullptr)
        *result = now.tv_sec;
    return now.tv_sec;
}

}  // extern "C"
