#include "link/frame_parser.h"

#include <algorithm>
#include <cstring>
#include <utility>

FrameParser::FrameParser(Handler handler) : handler_(std::move(handler)) {}

void FrameParser::reset() {
    state_ = State::StartMark;
    payloadIndex_ = 0;
    stopped_ = true;
}

void FrameParser::deliver() {
    state_ = State::StartMark;
    payloadIndex_ = 0;
    handler_(command_, p1_, p2_, length_, length_ > 0 ? buffer_.data() : nullptr);
}

void FrameParser::consume(std::size_t count) {
    // The payload grows at the front of the buffer while the bytes still to be read lie further
    // back. Each frame costs a header on the reading side, so the two never meet.
    std::size_t position = payloadIndex_;
    const std::size_t end = position + std::min(count, writeSpace());

    stopped_ = false;
    while (position < end && !stopped_) {
        if (state_ == State::Payload) {
            const std::size_t piece =
                std::min<std::size_t>(length_ - payloadIndex_, end - position);
            if (position != payloadIndex_)
                std::memmove(buffer_.data() + payloadIndex_, buffer_.data() + position, piece);
            payloadIndex_ += piece;
            position += piece;
            if (payloadIndex_ == length_)
                deliver();
            continue;
        }

        const auto byte = static_cast<std::uint8_t>(buffer_[position++]);
        switch (state_) {
            case State::StartMark:
                if (byte == Frame::kStartMark)
                    state_ = State::LinkMark;
                break;
            case State::LinkMark:
                state_ = byte == Frame::kLinkMark ? State::CommandLow : State::StartMark;
                break;
            case State::CommandLow:
                command_ = byte;
                state_ = State::CommandHigh;
                break;
            case State::CommandHigh:
                command_ = static_cast<std::uint16_t>(command_ | (byte << 8));
                state_ = State::FirstParameter;
                break;
            case State::FirstParameter:
                p1_ = byte;
                state_ = State::SecondParameter;
                break;
            case State::SecondParameter:
                p2_ = byte;
                state_ = State::LengthLow;
                break;
            case State::LengthLow:
                length_ = byte;
                state_ = State::LengthHigh;
                break;
            case State::LengthHigh:
                length_ = static_cast<std::uint16_t>(length_ | (byte << 8));
                payloadIndex_ = 0;
                if (length_ > Frame::kMaxPayloadSize)
                    state_ = State::StartMark;  // no peer builds one: this was no header
                else if (length_ == 0)
                    deliver();
                else
                    state_ = State::Payload;
                break;
            case State::Payload:
                break;  // handled above
        }
    }
}
