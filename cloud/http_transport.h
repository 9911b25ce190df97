#pragma once

#include <pistache/transport.h>

#include <chrono>
#include <memory>

class HttpGuard;

/// The HTTP library's transport, less its way of writing: that spins while a client does not read,
/// and misses that there is room again when the client sends something at the same time. Answers
/// are written by the guard, which this tells when there is room, and when time has passed.
class HttpTransport : public Pistache::Tcp::Transport {
 public:
    explicit HttpTransport(std::shared_ptr<HttpGuard> guard);
    ~HttpTransport() override;

    void registerPoller(Pistache::Polling::Epoll& poller) override;
    void onReady(const Pistache::Aio::FdSet& ready) override;
    std::shared_ptr<Pistache::Aio::Handler> clone() const override;

 private:
    void startTimer(std::chrono::milliseconds interval);

    const std::shared_ptr<HttpGuard> guard_;
    int timer_ = -1;
    bool running_ = false;
};
