#include <algorithm>
#include <cstdint>
#include <cstdlib>
#include <cstring>

#include "link/frame_parser.h"

// The first byte of the input chooses the size of the pieces that the rest arrives in.
extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* bytes, std::size_t size) {
    if (size == 0)
        return 0;
    unsigned long sum = 0;
    FrameParser parser([&sum](std::uint16_t command, std::uint8_t, std::uint8_t,
                              std::uint16_t length, const char* payload) {
        if (length > Frame::kMaxPayloadSize || (length > 0) != (payload != nullptr))
            std::abort();
        sum += command;
        for (std::uint16_t i = 0; i < length; ++i)
            sum += static_cast<unsigned char>(payload[i]);
    });
    const std::size_t piece = bytes[0] + 1U;
    for (std::size_t at = 1; at < size;) {
        const std::size_t count = std::min({piece, size - at, parser.writeSpace()});
        std::memcpy(parser.writePosition(), bytes + at, count);
        parser.consume(count);
        at += count;
    }
    return 0;
}
