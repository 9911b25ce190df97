#include "link/frame.h"

namespace Frame {

QByteArray build(std::uint16_t command, std::uint8_t p1, std::uint8_t p2, std::uint16_t length,
                 const char* payload) {
    if (length > kMaxPayloadSize || (length > 0 && payload == nullptr))
        return {};
    const char header[kHeaderSize] = {
        static_cast<char>(kStartMark),
        static_cast<char>(kLinkMark),
        static_cast<char>(command & 0xFF),
        static_cast<char>(command >> 8),
        static_cast<char>(p1),
        static_cast<char>(p2),
        static_cast<char>(length & 0xFF),
        static_cast<char>(length >> 8),
    };
    QByteArray frame;
    frame.reserve(static_cast<int>(kHeaderSize) + length);
    frame.append(header, kHeaderSize);
    frame.append(payload, length);
    return frame;
}

}  // namespace Frame
