#include <arpa/inet.h>
#include <netinet/in.h>
#include <netinet/tcp.h>
#include <poll.h>
#include <sys/socket.h>
#include <unistd.h>

#include <algorithm>
#include <chrono>
#include <cstdio>
#include <cstdlib>
#include <string>
#include <vector>

/// Asks an HTTP server on loopback for the same thing over and over, on as many connections as
/// wanted, each of which waits for its answer before it asks again. Prints the answers a second and
/// the 99th percentile of their times in microseconds.

namespace {

using Clock = std::chrono::steady_clock;

struct Connection {
    int socket = -1;
    Clock::time_point asked;
    std::string answer;
};

int connectTo(int port) {
    const int socket = ::socket(AF_INET, SOCK_STREAM | SOCK_CLOEXEC, 0);
    const int on = 1;
    ::setsockopt(socket, IPPROTO_TCP, TCP_NODELAY, &on, sizeof on);
    sockaddr_in address{};
    address.sin_family = AF_INET;
    address.sin_port = htons(static_cast<std::uint16_t>(port));
    address.sin_addr.s_addr = htonl(INADDR_LOOPBACK);
    if (::connect(socket, reinterpret_cast<sockaddr*>(&address), sizeof address) != 0) {
        std::perror("connect");
        std::exit(1);
    }
    return socket;
}

void ask(Connection& connection, const std::string& request) {
    connection.answer.clear();
    connection.asked = Clock::now();
    if (::send(connection.socket, request.data(), request.size(), MSG_NOSIGNAL) < 0) {
        std::perror("send");
        std::exit(1);
    }
}

/// Whether the answer is there to its last byte.
bool complete(const std::string& answer) {
    const std::size_t head = answer.find("\r\n\r\n");
    if (head == std::string::npos)
        return false;
    const std::string field = "Content-Length: ";
    const std::size_t at = answer.find(field);
    const auto length = at < head ? std::strtoul(&answer[at + field.size()], nullptr, 10) : 0;
    return answer.size() >= head + 4 + length;
}

/// Reads what has come; true when the answer is complete.
bool receive(Connection& connection) {
    char buffer[65536];
    const ssize_t size = ::recv(connection.socket, buffer, sizeof buffer, 0);
    if (size <= 0) {
        std::fprintf(stderr, "connection lost\n");
        std::exit(1);
    }
    connection.answer.append(buffer, static_cast<std::size_t>(size));
    if (!complete(connection.answer))
        return false;
    if (connection.answer.compare(0, 15, "HTTP/1.1 200 OK") != 0) {
        std::fprintf(stderr, "%s\n", connection.answer.c_str());
        std::exit(1);
    }
    return true;
}

}  // namespace

int main(int argc, char** argv) {
    if (argc != 5) {
        std::fprintf(stderr, "http_load PORT PATH CONNECTIONS MILLISECONDS\n");
        return 2;
    }
    const std::string request =
        "POST " + std::string(argv[2]) +
        " HTTP/1.1\r\nHost: localhost\r\nConnection: keep-alive\r\nContent-Length: 0\r\n\r\n";
    std::vector<Connection> connections(std::strtoul(argv[3], nullptr, 10));
    std::vector<pollfd> watched;
    for (Connection& connection : connections) {
        connection.socket = connectTo(std::atoi(argv[1]));
        watched.push_back({connection.socket, POLLIN, 0});
    }

    std::vector<double> times;
    const auto begin = Clock::now();
    const auto end = begin + std::chrono::milliseconds(std::atoi(argv[4]));
    for (Connection& connection : connections)
        ask(connection, request);
    Clock::time_point now = begin;
    while (now < end) {
        ::poll(watched.data(), watched.size(), 1000);
        now = Clock::now();
        for (std::size_t i = 0; i < watched.size(); ++i) {
            if (watched[i].revents == 0 || !receive(connections[i]))
                continue;
            now = Clock::now();
            times.push_back(std::chrono::duration<double>(now - connections[i].asked).count());
            ask(connections[i], request);
        }
    }
    if (times.empty())
        return 1;
    const auto percentile = times.begin() + static_cast<std::ptrdiff_t>(times.size() * 99 / 100);
    std::nth_element(times.begin(), percentile, times.end());
    std::printf(
        "%f %f\n",
        static_cast<double>(times.size()) / std::chrono::duration<double>(now - begin).count(),
        *percentile * 1e6);
}
