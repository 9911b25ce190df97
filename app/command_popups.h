#pragma once

/// What the popups on the controller's own reports say, and what comes with them.
namespace CommandPopups {

enum class Kind {
    Result,    ///< on the shared popup dialog, until it is closed
    Notice,    ///< closes by itself, stamped with the date and time
    Question,  ///< asks whether logs may be deleted
};

struct Popup {
    Kind kind;
    const char* key;  ///< script key
    bool isError;
    const char* screen = nullptr;  ///< the screen to change to first, if any
};

/// The popup for @p command with the first parameter @p p1; null when there is none.
const Popup* find(int command, int p1);

}  // namespace CommandPopups
