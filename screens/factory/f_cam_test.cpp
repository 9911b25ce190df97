#include "screens/factory/f_cam_test.h"

#include "app/window_shell.h"
#include "link/command_code.h"
#include "link/command_parameters.h"

namespace {

namespace factory = command::factory;

/// The controller shows another camera's picture only once it has said so.
std::optional<double> switchedTo(const DeviceMessage& message, const FactoryStep& step) {
    if (message.p1 != step.option)
        return std::nullopt;
    return 0;
}

constexpr FactoryStep cameraOf(std::uint8_t camera, const char* name, const char* labelKey) {
    return {command::FactoryCameraTest,
            camera,
            command::FactoryCameraReport,
            labelKey,
            nullptr,
            &factory_read::resultOfOption,
            nullptr,
            0,
            0,
            FactoryStep::ByFirstValue,
            FactoryStep::kAnswerTime,
            name};
}

constexpr FactoryStep pictureOf(std::uint8_t camera, const char* name, const char* labelKey) {
    return {command::FactoryCameraSwitch,
            camera,
            command::FactoryCameraSwitched,
            labelKey,
            nullptr,
            &switchedTo,
            nullptr,
            0,
            0,
            FactoryStep::AlsoByPerson,
            FactoryStep::kAnswerTime,
            name};
}

constexpr FactoryStep kSteps[] = {
    cameraOf(factory::Infrared, "infrared", "ListItem_FactoryInfrared"),
    pictureOf(factory::Infrared, "infraredPicture", "ListItem_FactoryInfraredPicture"),
    cameraOf(factory::Colour, "colour", "ListItem_FactoryColourCamera"),
    pictureOf(factory::Colour, "colourPicture", "ListItem_FactoryColourPicture"),
};

constexpr QSize kPicture(448, 256);

}  // namespace

void f_camTest::built() {
    setSteps(kSteps);
    auto* picture = new CameraPicture(this);
    picture->setFixedSize(kPicture);
    // There it shows the middle of what the camera sees.
    constexpr int kRowsAbove = 2;
    addContent(picture, kRowsAbove);
}

void f_camTest::windowInEvent() {
    shell()->SendCommand(command::StartFaceCapture, command::capture::CameraTest, 0);
    FormScreen::windowInEvent();
}
