#include "app/unix_signals.h"

#include <fcntl.h>
#include <poll.h>
#include <signal.h>
#include <unistd.h>

#include <QCoreApplication>
#include <QSocketNotifier>
#include <cerrno>
#include <cstddef>

namespace {

int quitPipe[2] = {-1, -1};

/// Appends @p text to @p line without stdio. Returns the new length.
std::size_t append(char* line, std::size_t length, const char* text) {
    while (*text != '\0')
        line[length++] = *text++;
    return length;
}

/// Whether somebody takes what is printed now: a pipe that nobody empties would hold the process.
bool isHeard() {
    pollfd output{STDOUT_FILENO, POLLOUT, 0};
    return ::poll(&output, 1, 0) == 1 && output.revents == POLLOUT;
}

void quitOnSignal(int number) {
    const int before = errno;
    // A full pipe already holds a wake-up.
    if (::write(quitPipe[1], "", 1) < 0)
        errno = before;
    char line[64];
    std::size_t length = append(line, 0, "\nquit the application by signal(");
    if (number >= 10)
        line[length++] = static_cast<char>('0' + number / 10 % 10);
    line[length++] = static_cast<char>('0' + number % 10);
    length = append(line, length, ").\n");
    if (isHeard() && ::write(STDOUT_FILENO, line, length) < 0)
        errno = before;  // nobody can be told
    errno = before;
}

sigset_t setOf(std::initializer_list<int> numbers) {
    sigset_t set;
    ::sigemptyset(&set);
    for (const int number : numbers)
        ::sigaddset(&set, number);
    return set;
}

}  // namespace

void holdUnixSignals(std::initializer_list<int> numbers) {
    const sigset_t set = setOf(numbers);
    ::pthread_sigmask(SIG_BLOCK, &set, nullptr);
}

void catchUnixSignals(std::initializer_list<int> numbers) {
    if (quitPipe[0] < 0 && ::pipe2(quitPipe, O_CLOEXEC | O_NONBLOCK) == 0) {
        auto* notifier =
            new QSocketNotifier(quitPipe[0], QSocketNotifier::Read, QCoreApplication::instance());
        QObject::connect(notifier, &QSocketNotifier::activated, QCoreApplication::instance(), [] {
            char bytes[16];
            while (::read(quitPipe[0], bytes, sizeof bytes) > 0) {
            }
            QCoreApplication::quit();
        });
    }
    const sigset_t set = setOf(numbers);
    for (const int number : numbers) {
        struct sigaction action {};
        action.sa_handler = quitOnSignal;
        action.sa_mask = set;
        action.sa_flags = SA_RESTART;
        ::sigaction(number, &action, nullptr);
    }
    ::pthread_sigmask(SIG_UNBLOCK, &set, nullptr);
}

void ignoreUnixSignals(std::initializer_list<int> numbers) {
    for (const int number : numbers)
        ::signal(number, SIG_IGN);
}
