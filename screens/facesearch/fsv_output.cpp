#include "screens/facesearch/fsv_output.h"

#include <poll.h>
#include <unistd.h>

#include <algorithm>
#include <atomic>
#include <cerrno>
#include <climits>
#include <cstdarg>
#include <cstdio>
#include <string>

Q_LOGGING_CATEGORY(faceSearchLog, "zel.facesearch", QtInfoMsg)

namespace {

std::atomic<bool> waits{true};

/// Whether so much as PIPE_BUF bytes can be written; a place where nobody reads has no room.
bool hasRoom() {
    pollfd output{STDOUT_FILENO, POLLOUT, 0};
    int ready = 0;
    do
        ready = ::poll(&output, 1, waits ? -1 : 0);
    while (ready < 0 && errno == EINTR);
    return ready > 0 && (output.revents & POLLOUT) != 0;
}

}  // namespace

void fsvPrintWaits(bool on) {
    waits = on;
}

void fsvPrint(const char* format, ...) {
    std::va_list arguments;
    va_start(arguments, format);
    std::va_list again;
    va_copy(again, arguments);
    const int length = std::vsnprintf(nullptr, 0, format, arguments);
    va_end(arguments);
    std::string text(static_cast<std::size_t>(std::max(length, 0)) + 1, '\0');
    std::vsnprintf(text.data(), text.size(), format, again);
    va_end(again);
    text.pop_back();
    while (!text.empty() && hasRoom()) {
        const ssize_t written =
            ::write(STDOUT_FILENO, text.data(), std::min<std::size_t>(text.size(), PIPE_BUF));
        if (written < 0 && errno != EINTR)
            return;
        text.erase(0, written > 0 ? static_cast<std::size_t>(written) : 0);
    }
}
