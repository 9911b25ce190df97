#pragma once

#include <QString>
#include <cstdint>

/// Who gets which frame of the device controller.
enum class RouteRule {
    Shell,         ///< handled by the dispatch itself, whatever screen is active
    ActiveScreen,  ///< to a screen of the row, only while it is the active one
    AnyActive,     ///< to the active screen, whichever it is
    NamedScreen,   ///< to the row's first screen, active or not
    ScreenFirst,   ///< as ActiveScreen, and otherwise as Shell
    NoAction,      ///< known, nothing to do
};

/// One row of the dispatch table.
struct MessageRoute {
    std::uint16_t command;
    RouteRule rule;
    std::uint16_t minPayload;        ///< a shorter payload is not handled
    QLatin1String title;             ///< registry title, null where the rule needs none
    QLatin1String secondTitle = {};  ///< further screens that may be the active one
    QLatin1String thirdTitle = {};
};

/// The row of @p command; null for a code that the terminal does not know.
const MessageRoute* findMessageRoute(std::uint16_t command);
