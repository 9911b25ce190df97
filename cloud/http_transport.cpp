#include "cloud/http_transport.h"

#include <sys/timerfd.h>
#include <sys/types.h>
#include <unistd.h>

#include <cerrno>
#include <cstdint>
#include <system_error>
#include <utility>
#include <vector>

#include "cloud/http_guard.h"

namespace Aio = Pistache::Aio;
namespace Polling = Pistache::Polling;

// What waits to be written is laid out by the library and released here.
static_assert(sizeof(off_t) == 8, "the HTTP library is built with 64-bit file offsets");

HttpTransport::HttpTransport(std::shared_ptr<HttpGuard> guard)
    : Transport(guard), guard_(std::move(guard)) {}

HttpTransport::~HttpTransport() {
    if (timer_ >= 0)
        ::close(timer_);
}

std::shared_ptr<Aio::Handler> HttpTransport::clone() const {
    return std::make_shared<HttpTransport>(std::static_pointer_cast<HttpGuard>(guard_->clone()));
}

void HttpTransport::registerPoller(Polling::Epoll& poller) {
    Transport::registerPoller(poller);
    timer_ = ::timerfd_create(CLOCK_MONOTONIC, TFD_NONBLOCK | TFD_CLOEXEC);
    if (timer_ < 0)
        throw std::system_error(errno, std::generic_category(), "no timer");
    poller.addFd(timer_, Pistache::Flags<Polling::NotifyOn>(Polling::NotifyOn::Read),
                 Polling::Tag(static_cast<std::uint64_t>(timer_)));
}

void HttpTransport::onReady(const Aio::FdSet& ready) {
    guard_->beginRound();
    std::vector<Polling::Event> others;
    for (const auto& entry : ready) {
        const Polling::Tag tag = entry.getTag();
        if (tag == Polling::Tag(static_cast<std::uint64_t>(timer_))) {
            std::uint64_t ticks = 0;
            running_ = ::read(timer_, &ticks, sizeof ticks) < 0;
            guard_->watch();
            continue;
        }
        const auto peer = peers.find(static_cast<Pistache::Fd>(tag.value()));
        if (entry.isWritable() && peer != peers.end())
            guard_->onRoom(peer->second);
        if (!entry.isReadable())
            continue;
        Polling::Event event(tag);
        event.flags.setFlag(Polling::NotifyOn::Read);
        others.push_back(event);
    }
    if (!others.empty())
        Transport::onReady(Aio::FdSet(std::move(others)));
    guard_->endRound();
    if (!running_ && !peers.empty())
        startTimer(guard_->limits().watch);
}

void HttpTransport::startTimer(std::chrono::milliseconds interval) {
    itimerspec time{};
    time.it_value.tv_sec = interval.count() / 1000;
    time.it_value.tv_nsec = interval.count() % 1000 * 1000000;
    running_ = ::timerfd_settime(timer_, 0, &time, nullptr) == 0;
}
