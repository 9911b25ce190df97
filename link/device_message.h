#pragma once

#include <QString>
#include <cstdint>
#include <cstring>
#include <optional>
#include <vector>

/// A frame from the device controller on its way to the part that it concerns. The payload is only
/// valid while the message is being handled.
struct DeviceMessage {
    std::uint16_t command = 0;
    std::uint8_t p1 = 0;
    std::uint8_t p2 = 0;
    std::uint16_t length = 0;
    const char* payload = nullptr;

    /// A copy of the packed record that the payload begins with; nothing when it is shorter.
    template <typename Record>
    std::optional<Record> record() const {
        if (payload == nullptr || length < sizeof(Record))
            return std::nullopt;
        Record copy;
        std::memcpy(&copy, payload, sizeof copy);
        return copy;
    }

    /// Copies of the packed records that the payload holds one behind the other. The piece of a
    /// record at the end is left out, so a payload shorter than one gives none.
    template <typename Record>
    std::vector<Record> records() const {
        if (payload == nullptr || length < sizeof(Record))
            return {};
        std::vector<Record> copies(length / sizeof(Record));
        std::memcpy(copies.data(), payload, copies.size() * sizeof(Record));
        return copies;
    }
};

/// The text of a fixed-width, zero-filled UTF-8 field.
template <std::size_t size>
QString fieldText(const char (&field)[size]) {
    return QString::fromUtf8(field, static_cast<int>(::strnlen(field, size)));
}

/// Fills a fixed-width field with @p text and zeros, cut at the last whole character that fits.
template <std::size_t size>
void setFieldText(char (&field)[size], const QString& text) {
    QByteArray bytes = text.toUtf8();
    int end = qMin(bytes.size(), static_cast<int>(size));
    while (end > 0 && end < bytes.size() && (static_cast<unsigned char>(bytes[end]) & 0xC0) == 0x80)
        --end;
    std::memset(field, 0, size);
    std::memcpy(field, bytes.constData(), static_cast<std::size_t>(end));
}
