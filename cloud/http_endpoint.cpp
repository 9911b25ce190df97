#include "cloud/http_endpoint.h"

#include <arpa/inet.h>
#include <fcntl.h>
#include <netinet/in.h>
#include <pistache/peer.h>
#include <poll.h>
#include <sys/socket.h>
#include <unistd.h>

#include <cerrno>
#include <cstring>
#include <system_error>
#include <utility>

#include "cloud/cloud_log.h"
#include "cloud/http_guard.h"
#include "cloud/http_transport.h"

namespace Aio = Pistache::Aio;
namespace Tcp = Pistache::Tcp;

namespace {

constexpr int kBacklog = 128;
/// What the kernel keeps of answers for each client that does not read them, in bytes; left to
/// itself it keeps megabytes.
constexpr int kSendBuffer = 128 * 1024;
/// Where no connection can be had although there should be room, it is tried again after this many
/// milliseconds, or when one ends.
constexpr int kRetryInterval = 1000;

[[noreturn]] void fail(const char* what) {
    throw std::system_error(errno, std::generic_category(), what);
}

}  // namespace

class HttpEndpoint::Descriptor {
 public:
    explicit Descriptor(int number) : number_(number) {}
    ~Descriptor() {
        if (number_ >= 0)
            ::close(number_);
    }
    Descriptor(const Descriptor&) = delete;
    Descriptor& operator=(const Descriptor&) = delete;

    operator int() const { return number_; }
    int release() { return std::exchange(number_, -1); }

 private:
    int number_;
};

/// Counts the connections from when they are accepted until they are closed, and wakes who waits
/// for one to end.
class HttpEndpoint::Places {
 public:
    explicit Places(int most) : most_(most) {
        int ends[2];
        if (::pipe2(ends, O_CLOEXEC | O_NONBLOCK) != 0)
            fail("no pipe");
        read_ = ends[0];
        write_ = ends[1];
    }
    ~Places() {
        ::close(read_);
        ::close(write_);
    }
    Places(const Places&) = delete;
    Places& operator=(const Places&) = delete;

    bool isFree() const { return taken_ < most_; }
    /// A place that is free again when the value goes.
    static std::shared_ptr<void> take(const std::shared_ptr<Places>& places) {
        ++places->taken_;
        return {nullptr, [places](void*) { places->leave(); }};
    }

    /// Has the next connection that ends wake the waiting one.
    void await() { awaited_ = true; }
    void wake() const {
        // A full pipe wakes as well.
        if (::write(write_, "", 1) < 0)
            return;
    }
    /// Readable when woken, until cleared.
    int awakening() const { return read_; }
    void clear() const {
        char bytes[64];
        while (::read(read_, bytes, sizeof bytes) > 0) {
        }
    }

 private:
    void leave() {
        --taken_;
        if (awaited_.exchange(false))
            wake();
    }

    const int most_;
    int read_ = -1;
    int write_ = -1;
    std::atomic<int> taken_{0};
    std::atomic<bool> awaited_{false};
};

HttpEndpoint::HttpEndpoint(const Pistache::Address& address) : address_(address) {}

HttpEndpoint::~HttpEndpoint() = default;

void HttpEndpoint::init(int most) {
    most_ = most;
}

void HttpEndpoint::setHandler(std::shared_ptr<HttpGuard> guard) {
    guard_ = std::move(guard);
}

void HttpEndpoint::bind() {
    listener_.reset();
    auto places = std::make_shared<Places>(most_);
    auto listener = std::make_unique<Descriptor>(
        ::socket(AF_INET, SOCK_STREAM | SOCK_CLOEXEC | SOCK_NONBLOCK, 0));
    if (*listener < 0)
        fail("no socket");
    // A restart must not wait for the connections of the last run to fade.
    const int on = 1;
    ::setsockopt(*listener, SOL_SOCKET, SO_REUSEADDR, &on, sizeof on);
    ::setsockopt(*listener, SOL_SOCKET, SO_SNDBUF, &kSendBuffer, sizeof kSendBuffer);
    sockaddr_in address{};
    address.sin_family = AF_INET;
    address.sin_port = htons(address_.port());
    if (::inet_pton(AF_INET, address_.host().c_str(), &address.sin_addr) != 1) {
        errno = EAFNOSUPPORT;
        fail("no IPv4 address");
    }
    if (::bind(*listener, reinterpret_cast<const sockaddr*>(&address), sizeof address) != 0 ||
        ::listen(*listener, kBacklog) != 0)
        fail("address not to be had");
    listener_ = std::move(listener);
    const std::lock_guard<std::mutex> lock(placesLock_);
    places_ = std::move(places);
}

void HttpEndpoint::serve() {
    const auto reactor = Aio::Reactor::create();
    reactor->init(Aio::AsyncContext(1));
    const Aio::Reactor::Key key = reactor->addHandler(std::make_shared<HttpTransport>(guard_));
    // The worker is joined when the reactor goes, and has to be told before, whatever happens.
    const std::shared_ptr<void> end(nullptr, [&reactor](void*) { reactor->shutdown(); });
    reactor->run();
    accept(*reactor, key);
    listener_.reset();
}

void HttpEndpoint::accept(Aio::Reactor& reactor, const Aio::Reactor::Key& key) {
    const auto worker = std::static_pointer_cast<Tcp::Transport>(reactor.handlers(key).front());
    bool complained = false;
    bool failed = false;
    while (!stopping_) {
        if (failed || !places_->isFree())
            places_->await();
        const bool wanted = !failed && places_->isFree();
        pollfd events[] = {{places_->awakening(), POLLIN, 0}, {*listener_, POLLIN, 0}};
        ::poll(events, wanted ? 2 : 1, failed ? kRetryInterval : -1);
        places_->clear();
        failed = false;
        if (!wanted || events[1].revents == 0 || stopping_)
            continue;

        sockaddr_in address{};
        socklen_t size = sizeof address;
        Descriptor socket(::accept4(*listener_, reinterpret_cast<sockaddr*>(&address), &size,
                                    SOCK_NONBLOCK | SOCK_CLOEXEC));
        if (socket < 0) {
            // What else comes of accepting concerns that connection only.
            failed = errno == EMFILE || errno == ENFILE || errno == ENOBUFS || errno == ENOMEM;
            if (failed && !complained)
                qCWarning(cloudLog, "no connection to be accepted (%s), trying every second",
                          std::strerror(errno));
            complained |= failed;
            continue;
        }
        complained = false;
        try {
            const auto peer = Tcp::Peer::Create(socket, Pistache::Address::fromUnix(&address));
            peer->putData("zel.place", Places::take(places_));
            worker->handleNewPeer(peer);
            socket.release();  // the worker closes it
        } catch (const std::exception& error) {
            qCWarning(cloudLog, "connection not taken: %s", error.what());
        }
    }
}

void HttpEndpoint::shutdown() {
    stopping_ = true;
    const std::lock_guard<std::mutex> lock(placesLock_);
    if (places_)
        places_->wake();
}
