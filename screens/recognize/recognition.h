#pragma once

class WindowShell;

/// The frames by which the screens at the door have the controller look for people, or leave that.
namespace Recognition {

/// Has it look for faces, and show the camera's picture.
void start(WindowShell& shell);
void stop(WindowShell& shell);

}  // namespace Recognition
