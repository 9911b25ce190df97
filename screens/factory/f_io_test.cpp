#include "screens/factory/f_io_test.h"

#include "app/window_shell.h"
#include "link/command_code.h"
#include "link/command_parameters.h"

namespace {

namespace factory = command::factory;

std::optional<double> levelOf(const DeviceMessage& message, const FactoryStep& step) {
    if (message.p1 != step.option)
        return std::nullopt;
    return message.p2;
}

constexpr FactoryStep stepOf(std::uint8_t option, const char* name, const char* labelKey,
                             const char* hintKey) {
    return {command::FactoryIoTest,
            option,
            command::FactoryIoReport,
            labelKey,
            hintKey,
            &levelOf,
            nullptr,
            0,
            2,
            FactoryStep::WhenSeen,
            FactoryStep::kAnswerTime,
            name};
}

/// By their numbers on the link.
constexpr FactoryStep kSteps[] = {
    stepOf(factory::Relay, "relay", "ListItem_FactoryRelay", "Info_FactoryRelay"),
    stepOf(factory::ExitButton, "exitButton", "ListItem_FactoryExitButton",
           "Info_FactoryExitButton"),
    stepOf(factory::TamperSwitch, "tamperSwitch", "ListItem_FactoryTamper", "Info_FactoryTamper"),
};

}  // namespace

void f_ioTest::built() {
    setSteps(kSteps);
}

void f_ioTest::deviceAnswer(const DeviceMessage& message) {
    FormScreen::deviceAnswer(message);
    if (message.command == command::FactoryIoStepDone)
        startStepAfter(message.p1);
}

void f_ioTest::startStepAfter(int done) {
    ensureForm();
    // Out of turn as well: nothing tells any more of what runs up to there.
    for (int step = 0; step <= qMin<int>(done, factory::TamperSwitch); ++step) {
        if (isRunning(step))
            judge(step, false);
    }
    if (done < factory::TamperSwitch)
        start(done + 1);
    else if (!stop())
        shell()->SendCommand(command::FactoryIoTest, factory::Stop, 0);
}
