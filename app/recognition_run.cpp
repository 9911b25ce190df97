#include "app/recognition_run.h"

#include "link/command_code.h"
#include "link/command_parameters.h"

void RecognitionRun::sent(std::uint16_t command, std::uint8_t p1) {
    switch (command) {
        case command::RecognitionMode:
            recognises_ = p1 == command::recognition::On;
            break;
        case command::CameraRun:
            cameraRuns_ = p1 == command::camera::On;
            break;
        case command::CameraPictureStart:
            pictureRuns_ = true;
            break;
        case command::CameraPictureStop:
            pictureRuns_ = false;
            break;
        default:
            break;
    }
}
