#pragma once

/// What the popups on the controller's own reports say.
namespace CommandPopups {

struct Text {
    const char* key;  ///< script key
    bool isError;
};

/// The text for @p command with the first parameter @p p1; null when there is none.
const Text* find(int command, int p1);

}  // namespace CommandPopups
