#pragma once

#include <memory>

namespace Pistache::Http {
class Endpoint;
}

/// The HTTP library's server with the terminal's options and nothing behind it: every request is
/// answered with a success. Runs on loopback from construction to destruction, in threads of its
/// own.
class BareServer {
 public:
    explicit BareServer(int port);
    ~BareServer();

 private:
    std::unique_ptr<Pistache::Http::Endpoint> endpoint_;
};
