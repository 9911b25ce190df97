#pragma once

#include <QByteArray>
#include <cstddef>
#include <cstdint>

/// The unit of the device link: an 8-byte header and a payload, little-endian, without checksum.
/// docs/device-link.md describes it for both sides.
namespace Frame {

constexpr std::uint8_t kStartMark = 0xC5;
constexpr std::uint8_t kLinkMark = 0x02;
constexpr std::size_t kHeaderSize = 8;
/// The largest whole frame that either side builds; buffers are made of this size.
constexpr std::size_t kMaxFrameSize = 2100;
constexpr std::size_t kMaxPayloadSize = kMaxFrameSize - kHeaderSize;

/// Builds one frame. @p length bytes are copied from @p payload, which may be null when @p length
/// is 0. A length above kMaxPayloadSize gives an empty array: no frame can carry it.
QByteArray build(std::uint16_t command, std::uint8_t p1, std::uint8_t p2, std::uint16_t length = 0,
                 const char* payload = nullptr);

}  // namespace Frame
