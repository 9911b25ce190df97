#pragma once

#include "link/device_records.h"
#include "link/record_values.h"

/// What the standby screen shows: the clock, or the picture of that number. The number outlives a
/// change to the clock and back. As one number it goes from screen to screen.
struct StandbyChoice {
    bool showsPicture;
    std::uint8_t picture;

    static StandbyChoice of(const ScreenBlock& screen) {
        return {screen.standbyMode == StandbyMode::ChosenPicture, screen.standbyPicture};
    }
    static StandbyChoice of(std::uint32_t number) {
        return {(number & 1U) != 0, static_cast<std::uint8_t>(number >> 1U)};
    }
    std::uint32_t number() const { return (std::uint32_t{picture} << 1U) | (showsPicture ? 1 : 0); }
    void put(ScreenBlock& screen) const {
        screen.standbyMode = showsPicture ? StandbyMode::ChosenPicture : StandbyMode::Clock;
        screen.standbyPicture = picture;
    }
    /// The picture's number as a person counts.
    int ordinal() const { return picture + 1; }
};
