#include "screens/recognize/recognition.h"

#include "app/window_shell.h"
#include "link/command_code.h"
#include "link/command_parameters.h"

void Recognition::start(WindowShell& shell) {
    shell.SendCommand(command::RecognitionMode, command::recognition::On, 0);
    shell.SendCommand(command::CameraRun, command::camera::On, 0);
    shell.SendCommand(command::CameraPictureStart, 0, 0);
}

void Recognition::stop(WindowShell& shell) {
    shell.SendCommand(command::RecognitionMode, command::recognition::Off, 0);
    shell.SendCommand(command::CameraRun, command::camera::Off, 0);
}
