#include "screens/facesearch/st_client.h"

#include <arpa/inet.h>
#include <netinet/in.h>
#include <netinet/tcp.h>
#include <poll.h>
#include <sys/socket.h>
#include <unistd.h>

#include <algorithm>
#include <cerrno>
#include <chrono>
#include <cstring>
#include <iterator>
#include <system_error>
#include <utility>

#include "screens/facesearch/face_answer.h"
#include "screens/facesearch/fsv_output.h"
#include "screens/facesearch/fsv_tools.h"

namespace {

using std::chrono::milliseconds;

constexpr milliseconds kConnectPatience{10000};
constexpr milliseconds kSendPatience{10000};
/// How long a server may be silent in the middle of a message.
constexpr milliseconds kMessagePatience{30000};
constexpr milliseconds kForEver{-1};
/// Far more than a session key takes.
constexpr std::uint32_t kMaxKeyAnswer = 64 * 1024;
/// After each message, so that a flood of them leaves the board some time.
constexpr auto kRest = std::chrono::microseconds(100);
constexpr int kKeepAliveTime = 60;  // seconds

/// The terminal's, of 2048 bits.
constexpr char kPublicKey[] =
    "-----BEGIN PUBLIC KEY-----\n"
    "MIIBIjANBgkqhkiG9w0BAQEFAAOCAQ8AMIIBCgKCAQEAt9lvqMnFrFQNI9A7cnQA\n"
    "nFfpu3R4jplWZsXcwpt+lHUzHCP69L7MpWnJXvYhRwDmCWBgLHozczgU1NV4Das7\n"
    "pz7SEO7DX5b3IdZme2TK0LdCNxLVHjP5k+okiNliokCswBnK0+yG+7ro2aOAzKIB\n"
    "AcvZT5cf37lNdhN+ZE96afT0gRFFbGT66HeEA60PStDYu/AEs1R/ERNFrr2LSK5Z\n"
    "LWG6YHP5AxgVx4EjEW6g9W9PIyat4OHT+92VyCpyWi6MCHYgxWRsO3g5xrAuTxYS\n"
    "iCgeQq/85iQ2hsd4wDeH4Rh7LjmbSRTEla6GTBluPH1AKpWNFgF3itupyCB62K8F\n"
    "PQIDAQAB\n"
    "-----END PUBLIC KEY-----\n";
constexpr int kPublicKeyLength = 451;
static_assert(sizeof kPublicKey - 1 == kPublicKeyLength);

/// Whom the running thread receives for, if anybody.
thread_local const ST_Client* receivesFor = nullptr;

template <class Value>
void append(std::vector<unsigned char>& bytes, const Value& value) {
    const auto* begin = reinterpret_cast<const unsigned char*>(&value);
    bytes.insert(bytes.end(), begin, begin + sizeof value);
}

}  // namespace

ST_Client::ST_Client(const char* address, int port, int encrypt)
    : address_{}, port_(port), encrypt_(encrypt) {
    std::strncpy(address_, address, kMaxAddress);
}

ST_Client::~ST_Client() {
    ST_Close();
}

int ST_Client::ST_Connect() {
    const std::lock_guard<std::mutex> life(life_);
    endConnection();
    if (!openSocket()) {
        fsvPrint("socket creation failed...\n");
        return -1;
    }
    if (!connectSocket()) {
        if (tellsFailure_)
            fsvPrint("Can not connect\n");
        endConnection();
        return -1;
    }
    fsvPrint("Encrpt : %d\n", encrypt_);
    if (encrypt_ != 0) {
        const int length = ST_GetKey();
        if (length < 0) {
            endConnection();
            return -1;
        }
        sessionKeyLength_ = length;
    }
    ended_.clear();
    running_ = true;
    try {
        receiver_ = std::thread([this] { pThreadFunc(); });
    } catch (const std::system_error&) {
        running_ = false;
        fsvPrint("pthread create error!\n");
        endConnection();
        return -1;
    }
    return 0;
}

void ST_Client::ST_Close() {
    running_ = false;
    // A thread cannot wait for its own end.
    if (receivesFor == this)
        return;
    const Closing closing(this);
    const std::lock_guard<std::mutex> life(life_);
    endConnection();
}

void ST_Client::endConnection() {
    const Closing closing(this);
    running_ = false;
    if (receiver_.joinable())
        receiver_.join();
    const std::lock_guard<std::mutex> sending(sending_);
    if (socket_ >= 0)
        ::close(std::exchange(socket_, -1));
}

ST_Client::Closing::Closing(ST_Client* client) : client_(client) {
    const std::lock_guard<std::mutex> counting(client_->closers_);
    ++client_->closersNow_;
    client_->closing_.set();
}

ST_Client::Closing::~Closing() {
    const std::lock_guard<std::mutex> counting(client_->closers_);
    if (--client_->closersNow_ == 0)
        client_->closing_.clear();
}

bool ST_Client::openSocket() {
    const std::lock_guard<std::mutex> sending(sending_);
    socket_ = ::socket(AF_INET, SOCK_STREAM | SOCK_NONBLOCK | SOCK_CLOEXEC, 0);
    if (socket_ < 0)
        return false;
    // A server that was switched off is noticed, and a request waits for no other one.
    const int on = 1;
    ::setsockopt(socket_, SOL_SOCKET, SO_KEEPALIVE, &on, sizeof on);
    ::setsockopt(socket_, IPPROTO_TCP, TCP_KEEPIDLE, &kKeepAliveTime, sizeof kKeepAliveTime);
    ::setsockopt(socket_, IPPROTO_TCP, TCP_NODELAY, &on, sizeof on);
    return true;
}

bool ST_Client::connectSocket() const {
    sockaddr_in server{};
    server.sin_family = AF_INET;
    server.sin_port = htons(static_cast<std::uint16_t>(port_));
    if (::inet_pton(AF_INET, address_, &server.sin_addr) != 1)
        return false;
    if (::connect(socket_, reinterpret_cast<sockaddr*>(&server), sizeof server) == 0)
        return true;
    if (errno != EINPROGRESS || !waitFor(POLLOUT, kConnectPatience))
        return false;
    int error = 0;
    socklen_t size = sizeof error;
    return ::getsockopt(socket_, SOL_SOCKET, SO_ERROR, &error, &size) == 0 && error == 0;
}

int ST_Client::ST_GetKey() {
    std::vector<unsigned char> request{face_message::KeyExchange};
    append(request, std::int32_t{kPublicKeyLength});
    request.insert(request.end(), kPublicKey, kPublicKey + kPublicKeyLength);
    if (transmit(request) != 0)
        return -1;
    fsvPrint("Send Public Key\n");

    unsigned char kind = 0;
    if (!readAll(&kind, sizeof kind, kMessagePatience)) {
        fsvPrint("socket read error! \n");
        return -1;
    }
    if (kind != face_message::KeyExchange) {
        fsvPrint("Kind Of API Error!\n");
        return -2;
    }
    std::uint32_t length = 0;
    if (!readAll(reinterpret_cast<unsigned char*>(&length), sizeof length, kMessagePatience) ||
        length > kMaxKeyAnswer)
        return -3;
    std::vector<unsigned char> answer(length);
    if (!readAll(answer.data(), answer.size(), kMessagePatience))
        return -3;
    sessionKey_.assign(length + kCipherRoom, 0);
    const int written =
        hooks_.decryptKey(answer.data(), static_cast<int>(length), sessionKey_.data());
    return written >= 0 && written <= static_cast<int>(sessionKey_.size()) ? written : -3;
}

int ST_Client::ST_SendData(const unsigned char* data, int length) {
    std::vector<unsigned char> frame;
    return appendFrame(&frame, data, length) ? transmit(frame) : -1;
}

int ST_Client::ST_RequestFace(int kind, unsigned char type, std::uint32_t requestId,
                              std::uint64_t personKey, unsigned char option, int length,
                              const unsigned char* data) {
    if (length < 0 || length > static_cast<int>(face_message::kMaxPayload) ||
        (data == nullptr && length > 0))
        return -1;
    FaceRequestHeader header{};
    header.type = type;
    header.requestId = requestId;
    header.personKey = personKey;
    GetCurTime(reinterpret_cast<unsigned char*>(&header.time));
    header.one = 1;
    header.four = 4;
    header.option = option;
    header.length = static_cast<std::uint32_t>(length);
    std::vector<unsigned char> payload;
    append(payload, header);
    if (length > 0)
        payload.insert(payload.end(), data, data + length);

    std::vector<unsigned char> message{static_cast<unsigned char>(kind)};
    return appendFrame(&message, payload.data(), static_cast<int>(payload.size()))
               ? transmit(message)
               : -1;
}

int ST_Client::ST_RequestFaceInfo(unsigned char type, std::uint32_t requestId,
                                  std::uint64_t personKey, unsigned char option, int length,
                                  const unsigned char* data) {
    return ST_RequestFace(face_message::FaceInfo, type, requestId, personKey, option, length, data);
}

int ST_Client::ST_RequestFaceInfoAndImage(unsigned char type, std::uint32_t requestId,
                                          std::uint64_t personKey, unsigned char option, int length,
                                          const unsigned char* data) {
    return ST_RequestFace(face_message::FaceInfoAndImage, type, requestId, personKey, option,
                          length, data);
}

int ST_Client::ST_RequestFaceImage(unsigned char type, std::uint32_t requestId,
                                   const char* personId) {
    FaceImageRequest request{};
    request.type = type;
    request.requestId = requestId;
    std::memcpy(request.personId, personId, ::strnlen(personId, sizeof request.personId));
    GetCurTime(reinterpret_cast<unsigned char*>(&request.time));
    std::vector<unsigned char> message{face_message::FaceImage};
    return appendFrame(&message, reinterpret_cast<const unsigned char*>(&request), sizeof request)
               ? transmit(message)
               : -1;
}

void ST_Client::ST_ReceiveFinish(int kind, void* record) {
    face_answer::release(kind, record);
}

void ST_Client::pThreadFunc() {
    receivesFor = this;
    for (int index = 0; running_ && receive(index); ++index)
        std::this_thread::sleep_for(kRest);
    running_ = false;
    ended_.set();
}

bool ST_Client::receive(int index) {
    const auto source = [this](unsigned char* to, std::size_t count, bool begun) {
        return readAll(to, count, begun ? kMessagePatience : kForEver);
    };
    int kind = 0;
    std::vector<unsigned char> payload;
    const face_answer::Taken taken = face_answer::take(source, index, &kind, &payload);
    if (taken == face_answer::Taken::SourceEnded && !stopAsked())
        fsvPrint("socket read error! \n");
    if (taken != face_answer::Taken::Message)
        return false;
    if (encrypt_ != 0 && !decrypt(&payload)) {
        qCWarning(faceSearchLog, "a message cannot be decrypted, the connection ends");
        return false;
    }
    void* record = face_answer::makeRecord(kind, payload);
    if (callback_ && (record != nullptr || !face_answer::hasRecord(kind)))
        callback_(kind, record);
    ST_ReceiveFinish(kind, record);
    return true;
}

bool ST_Client::decrypt(std::vector<unsigned char>* payload) const {
    std::vector<unsigned char> plain(payload->size() + kCipherRoom);
    const int written = hooks_.decrypt(sessionKey_.data(), payload->data(),
                                       static_cast<int>(payload->size()), plain.data());
    if (written < 0 || written > static_cast<int>(plain.size()))
        return false;
    plain.resize(static_cast<std::size_t>(written));
    payload->swap(plain);
    return true;
}

bool ST_Client::appendFrame(std::vector<unsigned char>* message, const unsigned char* data,
                            int length) const {
    if (length < 0 || (data == nullptr && length > 0))
        return false;
    if (encrypt_ == 0) {
        append(*message, std::int32_t{length});
        if (length > 0)
            message->insert(message->end(), data, data + length);
        return true;
    }
    std::vector<unsigned char> secret(static_cast<std::size_t>(length) + kCipherRoom);
    const int written = hooks_.encrypt(sessionKey_.data(), data, length, secret.data());
    if (written < 0 || written > static_cast<int>(secret.size()))
        return false;
    append(*message, std::int32_t{written});
    message->insert(message->end(), secret.begin(), secret.begin() + written);
    return true;
}

int ST_Client::transmit(const std::vector<unsigned char>& message) {
    const std::lock_guard<std::mutex> sending(sending_);
    std::size_t sent = 0;
    while (sent < message.size()) {
        const ssize_t taken =
            ::send(socket_, message.data() + sent, message.size() - sent, MSG_NOSIGNAL);
        if (taken >= 0) {
            sent += static_cast<std::size_t>(taken);
            continue;
        }
        if (errno == EINTR || (errno == EAGAIN && waitFor(POLLOUT, kSendPatience)))
            continue;
        // What follows half a message would be taken for its rest.
        ::shutdown(socket_, SHUT_RDWR);
        return -1;
    }
    return 0;
}

bool ST_Client::readAll(unsigned char* to, std::size_t count, milliseconds patience) const {
    while (count > 0) {
        const ssize_t got = ::recv(socket_, to, count, 0);
        if (got > 0) {
            to += got;
            count -= static_cast<std::size_t>(got);
            continue;
        }
        if (got == 0)
            return false;
        if (errno != EINTR && !(errno == EAGAIN && waitFor(POLLIN, patience)))
            return false;
    }
    return true;
}

bool ST_Client::waitFor(short event, milliseconds patience) const {
    using Clock = std::chrono::steady_clock;
    const auto end = Clock::now() + patience;
    for (;;) {
        pollfd waiting[] = {
            {socket_, event, 0}, {closing_.descriptor(), POLLIN, 0}, {stop_, POLLIN, 0}};
        int left = -1;
        if (patience != kForEver)
            left = std::max(
                0, static_cast<int>(std::chrono::ceil<milliseconds>(end - Clock::now()).count()));
        const int ready = ::poll(waiting, std::size(waiting), left);
        if (ready < 0 && errno == EINTR)
            continue;
        return ready > 0 && waiting[1].revents == 0 && waiting[2].revents == 0;
    }
}

bool ST_Client::stopAsked() const {
    pollfd waiting[] = {{closing_.descriptor(), POLLIN, 0}, {stop_, POLLIN, 0}};
    return !running_ || ::poll(waiting, std::size(waiting), 0) > 0;
}
