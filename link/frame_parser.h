#pragma once

#include <array>
#include <cstddef>
#include <cstdint>
#include <functional>

#include "link/frame.h"

/// Cuts frames out of a byte stream.
///
/// One buffer of the size of the largest frame serves both for reading and for putting payloads
/// together: new bytes are written behind the part of the payload that is already there
/// (writePosition(), writeSpace()) and handed over with consume(). A frame may arrive in any
/// number of pieces and a piece may hold any number of frames. Not thread-safe; it belongs to the
/// thread of its link. Never allocates.
class FrameParser {
 public:
    /// Receives each whole frame. @p payload is null when @p length is 0 and is valid only during
    /// the call. The parser must not be fed from inside the call.
    using Handler = std::function<void(std::uint16_t command, std::uint8_t p1, std::uint8_t p2,
                                       std::uint16_t length, const char* payload)>;

    explicit FrameParser(Handler handler);

    /// Where the next bytes are to be written; at least one byte of space is always there.
    char* writePosition() { return buffer_.data() + payloadIndex_; }
    /// How many bytes may be written at writePosition().
    std::size_t writeSpace() const { return buffer_.size() - payloadIndex_; }
    /// Works through @p count bytes just written at writePosition() and delivers every frame that
    /// they complete, in order, each before the next byte is looked at. A @p count above
    /// writeSpace() is cut to it.
    void consume(std::size_t count);

    /// Forgets a half-received frame and, inside a delivery, the bytes behind it.
    void reset();

    /// The two parameter bytes of the header read last.
    std::uint8_t firstParameter() const { return p1_; }
    std::uint8_t secondParameter() const { return p2_; }

 private:
    enum class State {
        StartMark,
        LinkMark,
        CommandLow,
        CommandHigh,
        FirstParameter,
        SecondParameter,
        LengthLow,
        LengthHigh,
        Payload,
    };

    void deliver();

    Handler handler_;
    State state_ = State::StartMark;
    std::uint16_t command_ = 0;
    std::uint8_t p1_ = 0;
    std::uint8_t p2_ = 0;
    std::uint16_t length_ = 0;
    bool stopped_ = false;          // reset() was called inside a delivery
    std::size_t payloadIndex_ = 0;  // bytes of the present payload, at the buffer's beginning
    std::array<char, Frame::kMaxFrameSize> buffer_{};
};
