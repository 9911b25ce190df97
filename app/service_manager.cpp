#include "app/service_manager.h"

#include <sys/socket.h>
#include <sys/un.h>
#include <unistd.h>

#include <QCoreApplication>
#include <algorithm>
#include <cstddef>
#include <cstring>

namespace {

/// How often it is told within the time after which the manager gives up.
constexpr int kTimesInTime = 3;
constexpr int kLongestPeriod = 60000;  // milliseconds

const QEvent::Type kAlive = static_cast<QEvent::Type>(QEvent::registerEventType());

QByteArray take(const char* name) {
    QByteArray value = qgetenv(name);
    qunsetenv(name);
    return value;
}

}  // namespace

ServiceManager::ServiceManager(QObject* parent) : QObject(parent), address_(take("NOTIFY_SOCKET")) {
    const QByteArray watched = take("WATCHDOG_PID");
    const qint64 microseconds = take("WATCHDOG_USEC").toLongLong();
    // A name in the abstract name space begins with "@", any other one is a path.
    if (address_.size() < 2 || address_.size() >= static_cast<int>(sizeof(sockaddr_un::sun_path)) ||
        (address_.at(0) != '@' && address_.at(0) != '/'))
        return;
    socket_ = ::socket(AF_UNIX, SOCK_DGRAM | SOCK_CLOEXEC | SOCK_NONBLOCK, 0);
    if (microseconds <= 0 || (!watched.isEmpty() && watched.toLongLong() != ::getpid()))
        return;
    timer_.setInterval(
        static_cast<int>(qBound<qint64>(1, microseconds / 1000 / kTimesInTime, kLongestPeriod)));
    connect(&timer_, &QTimer::timeout, this, &ServiceManager::ask);
}

ServiceManager::~ServiceManager() {
    if (socket_ >= 0)
        ::close(socket_);
}

void ServiceManager::start() {
    if (socket_ < 0)
        return;
    QTimer::singleShot(0, this, [this] {
        say("READY=1");
        if (timer_.interval() > 0)
            timer_.start();
    });
}

void ServiceManager::stopping() {
    timer_.stop();
    say("STOPPING=1");
}

void ServiceManager::ask() {
    // Behind all that waits already.
    asked_.start();
    QCoreApplication::postEvent(this, new QEvent(kAlive), Qt::LowEventPriority);
}

void ServiceManager::customEvent(QEvent* event) {
    if (event->type() == kAlive && asked_.elapsed() <= kLongestWait)
        say("WATCHDOG=1");
}

void ServiceManager::say(const char* message) const {
    if (socket_ < 0)
        return;
    sockaddr_un manager{};
    manager.sun_family = AF_UNIX;
    std::copy(address_.begin(), address_.end(), manager.sun_path);
    if (address_.at(0) == '@')
        manager.sun_path[0] = '\0';
    const auto size = static_cast<socklen_t>(offsetof(sockaddr_un, sun_path) +
                                             static_cast<std::size_t>(address_.size()));
    ::sendto(socket_, message, std::strlen(message), MSG_NOSIGNAL,
             reinterpret_cast<const sockaddr*>(&manager), size);
}
