#pragma once

#include <pistache/net.h>
#include <pistache/reactor.h>

#include <atomic>
#include <memory>
#include <mutex>

class HttpGuard;

/// Listens at an address and has the HTTP library's worker thread serve who connects.
///
/// The library's own listener accepts without end, spins when there are no descriptors left and
/// answers by itself. This one accepts only while there is room, and lets a client wait in the
/// kernel's queue until then.
class HttpEndpoint {
 public:
    explicit HttpEndpoint(const Pistache::Address& address);
    ~HttpEndpoint();
    HttpEndpoint(const HttpEndpoint&) = delete;
    HttpEndpoint& operator=(const HttpEndpoint&) = delete;

    /// Accepts no more than @p most connections at a time.
    void init(int most);
    /// Has @p guard see what the connections send; all calls of it come from the worker thread.
    void setHandler(std::shared_ptr<HttpGuard> guard);
    /// Takes the address; throws std::exception when it cannot be had.
    void bind();
    /// Serves until shutdown() and joins the worker. After bind(), in the same thread.
    void serve();
    /// Ends serve(), now or as soon as it is called. Any thread, also twice.
    void shutdown();

 private:
    class Descriptor;
    class Places;

    void accept(Pistache::Aio::Reactor& reactor, const Pistache::Aio::Reactor::Key& key);

    const Pistache::Address address_;
    std::shared_ptr<HttpGuard> guard_;
    int most_ = 1;
    std::unique_ptr<Descriptor> listener_;
    std::mutex placesLock_;
    std::shared_ptr<Places> places_;
    std::atomic<bool> stopping_{false};
};
