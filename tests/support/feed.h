#pragma once

#include <QByteArray>
#include <algorithm>
#include <cstdint>

#include "link/frame_parser.h"

/// Gives @p parser these bytes in pieces of @p piece at most.
inline void feed(FrameParser& parser, const QByteArray& bytes, std::size_t piece = SIZE_MAX) {
    const auto size = static_cast<std::size_t>(bytes.size());
    for (std::size_t at = 0; at < size;) {
        const std::size_t count = std::min({piece, size - at, parser.writeSpace()});
        std::copy_n(bytes.constData() + at, count, parser.writePosition());
        parser.consume(count);
        at += count;
    }
}
