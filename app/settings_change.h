#pragma once

#include <cstring>

#include "link/device_records.h"

/// What a settings record changes against the one that was in force before.
struct SettingsChange {
    const _gui_menu_& before;
    const _gui_menu_& now;
    bool first;  ///< the controller's first record since the start: anything may be new

    /// Whether the field or block @p part has changed, as in(&_gui_menu_::screen).
    template <typename Part>
    bool in(Part _gui_menu_::*part) const {
        return first || std::memcmp(&(before.*part), &(now.*part), sizeof(Part)) != 0;
    }
    /// Whether the field @p field of the block @p block has.
    template <typename Block, typename Field>
    bool in(Block _gui_menu_::*block, Field Block::*field) const {
        return first ||
               std::memcmp(&(before.*block.*field), &(now.*block.*field), sizeof(Field)) != 0;
    }
    /// Whether anything has.
    bool any() const { return first || std::memcmp(&before, &now, sizeof now) != 0; }
};
