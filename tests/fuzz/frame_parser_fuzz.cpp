#include <numeric>

#include "fuzz_root.h"
#include "tests/support/feed.h"

// The first byte of the input chooses the size of the pieces that the rest arrives in.
void take(std::uint8_t first, const QByteArray& rest) {
    // Whatever has been touched of a payload is in the sum.
    volatile unsigned long sum = 0;
    FrameParser parser([&sum](std::uint16_t command, std::uint8_t, std::uint8_t,
                              std::uint16_t length, const char* payload) {
        demand(length <= Frame::kMaxPayloadSize && (length > 0) == (payload != nullptr));
        sum = std::accumulate(payload, payload + length, sum + command);
    });
    feed(parser, rest, first + 1U);
}
