#include <algorithm>
#include <random>
#include <vector>

#include "app/message_dispatch.h"
#include "app/message_routes.h"
#include "fuzz_stage.h"
#include "link/command_code.h"
#include "link/frame.h"
#include "tests/support/feed.h"

extern "C" std::size_t LLVMFuzzerMutate(std::uint8_t* bytes, std::size_t size, std::size_t most)
    __attribute__((weak));

namespace {

/// No frame of a controller: a finger at p1 and p2, in steps of so many pixels.
constexpr quint16 kTouch = 1;
constexpr int kTouchStep = 4;

struct FuzzFrame {
    quint16 code;
    quint8 p1, p2;
    QByteArray payload;
};

std::vector<quint16> routedCodes() {
    std::vector<quint16> codes{kTouch};
    for (quint16 code = 0; code < 10000; ++code) {
        if (findMessageRoute(code) != nullptr)
            codes.push_back(code);
    }
    return codes;
}

QByteArray randomPayload(quint16 code, std::mt19937& random) {
    const MessageRoute* route = findMessageRoute(code);
    QByteArray payload(route != nullptr ? route->minPayload : 0, '\0');
    for (int i = random() % 4 == 0 ? 0 : payload.size() / 8; i > 0; --i)
        payload[static_cast<int>(random() % static_cast<unsigned>(payload.size()))] =
            static_cast<char>(random());
    return payload;
}

}  // namespace

/// Changes frames instead of bytes, most of the time: an input whose frames have lost their
/// lengths says little.
extern "C" std::size_t LLVMFuzzerCustomMutator(std::uint8_t* bytes, std::size_t size,
                                               std::size_t most, unsigned int seed) {
    static const std::vector<quint16> codes = routedCodes();
    std::mt19937 random(seed);
    if (size == 0 || random() % 8 == 0)
        return LLVMFuzzerMutate(bytes, size, most);
    std::vector<FuzzFrame> frames;
    FrameParser parser(
        [&frames](quint16 code, quint8 p1, quint8 p2, quint16 length, const char* payload) {
            frames.push_back({code, p1, p2, QByteArray(payload, length)});
        });
    feed(parser, bytesOf(bytes + 1, size - 1));
    const auto fresh = [&random] {
        const quint16 code = codes[random() % 4 == 0 ? 0 : random() % codes.size()];
        const bool small = code != kTouch && random() % 2 == 0;
        return FuzzFrame{code, static_cast<quint8>(random() % (small ? 6 : 256)),
                         static_cast<quint8>(random() % (small ? 6 : 256)),
                         randomPayload(code, random)};
    };
    const auto any = frames.empty() ? frames.end()
                                    : frames.begin() + static_cast<long>(random() % frames.size());
    switch (frames.empty() ? 0 : random() % 6) {
        case 0:
            frames.insert(any, fresh());
            break;
        case 1:
            *any = fresh();
            break;
        case 2:
            any->p1 = static_cast<quint8>(random() % (random() % 2 == 0 ? 20 : 256));
            any->p2 = static_cast<quint8>(random() % (random() % 2 == 0 ? 20 : 256));
            break;
        case 3:
            frames.erase(any);
            break;
        case 4:
            std::swap(*any, frames[random() % frames.size()]);
            break;
        default: {
            const int length = any->payload.size();
            any->payload.resize(std::min<int>(length + 64, Frame::kMaxPayloadSize));
            any->payload.resize(static_cast<int>(LLVMFuzzerMutate(
                reinterpret_cast<std::uint8_t*>(any->payload.data()),
                static_cast<std::size_t>(length), static_cast<std::size_t>(any->payload.size()))));
        }
    }
    QByteArray input(1, static_cast<char>(random() % 16 == 0 ? random() : bytes[0]));
    for (const FuzzFrame& frame : frames)
        input +=
            Frame::build(frame.code, frame.p1, frame.p2, static_cast<quint16>(frame.payload.size()),
                         frame.payload.constData());
    const std::size_t length = std::min(static_cast<std::size_t>(input.size()), most);
    std::copy_n(input.constData(), length, bytes);
    return length;
}

// The number of a screen, and frames as they come over the link, with touches in between.
void take(std::uint8_t first, const QByteArray& rest) {
    FuzzStage& terminal = FuzzStage::shared();
    terminal.open(terminal.title(first));
    auto* const dispatch = terminal.stage().window().findChild<MessageDispatch*>(
        QString(), Qt::FindDirectChildrenOnly);
    bool ended = false;
    FrameParser parser(
        [&](quint16 code, quint8 p1, quint8 p2, quint16 length, const char* payload) {
            if (ended)
                return;
            if (code == kTouch)
                terminal.touch({p1 * kTouchStep, p2 * kTouchStep});
            else
                dispatch->dispatch({code, p1, p2, length, payload});
            ended = code == command::Quit;
        });
    feed(parser, rest);
    terminal.settle();
    if (ended)
        terminal.stage().restart();
}
