#include "screens/factory/f_ver_test.h"

#include "app/window_shell.h"
#include "link/command_code.h"
#include "link/device_records.h"
#include "ui/label_button.h"

namespace {

enum Text { kUpdate = 1, kUpdating, kUpdated, kNoAnswer, kNoLink };

constexpr ScreenText kTexts[] = {
    {kUpdate, "Dialog_FactoryUpdate", ScreenText::Question, "Info_FactoryUpdate",
     "Button_FactoryUpdateNow"},
    {kUpdating, "Dialog_FactoryUpdating", ScreenText::Wait, "Info_FactoryUpdate"},
    {kUpdated, "Dialog_FactoryUpdated", ScreenText::Pass},
    {kNoAnswer, "Error_FactoryUpdate", ScreenText::Error},
    {kNoLink, "ListItem_NoController", ScreenText::Error},
};

constexpr int kUpdateTime = 60000;  // milliseconds

/// The versions of a report, in their order in the settings record.
struct Versions {
    char version[4][sizeof(_gui_menu_::firmwareVersion)];
};

template <std::size_t number>
QString versionOf(const DeviceMessage& message) {
    const auto versions = message.record<Versions>();
    return versions ? fieldText(versions->version[number]).simplified() : QString();
}

QString touchVersionOf(const DeviceMessage& message) {
    struct Version {
        char text[sizeof(_gui_menu_::firmwareVersion)];
    };
    const auto version = message.record<Version>();
    return version ? fieldText(version->text).simplified() : QString();
}

/// There has to be one; none that is cut short is looked at.
template <std::size_t size>
std::optional<double> isThere(const DeviceMessage& message, const FactoryStep& step) {
    if (message.length < size)
        return std::nullopt;
    return step.text(message).isEmpty() ? 1 : 0;
}

constexpr FactoryStep stepOf(const char* name, const char* labelKey,
                             QString (*text)(const DeviceMessage&)) {
    return {command::FactoryVersionTest,
            0,
            command::FactoryVersionReport,
            labelKey,
            nullptr,
            &isThere<sizeof(Versions)>,
            nullptr,
            0,
            0,
            FactoryStep::ByFirstValue,
            FactoryStep::kAnswerTime,
            name,
            text};
}

constexpr FactoryStep kSteps[] = {
    stepOf("firmware", "ListItem_FactoryFirmware", &versionOf<0>),
    stepOf("kernel", "ListItem_FactoryKernel", &versionOf<1>),
    stepOf("mainBoard", "ListItem_FactoryMainBoard", &versionOf<2>),
    stepOf("microcontroller", "ListItem_FactoryMicrocontroller", &versionOf<3>),
    {command::FactoryTouchVersion, 0, command::FactoryTouchVersionReport,
     "ListItem_FactoryTouchPanel", nullptr, &isThere<sizeof(_gui_menu_::firmwareVersion)>, nullptr,
     0, 0, FactoryStep::ByFirstValue, FactoryStep::kAnswerTime, "touchPanel", &touchVersionOf},
};

}  // namespace

f_verTest::f_verTest(QWidget* parent, const QString& title)
    : FormScreen(parent, title), popup_(this, kTexts) {
    // What the microcontroller runs then is told as the answer to the test is.
    connect(&request_, &DeviceRequest::answered, this, [this](const DeviceMessage& message) {
        popup_.show(message.length >= sizeof(Versions) ? kUpdated : kNoAnswer);
    });
    connect(&request_, &DeviceRequest::failed, this, [this](DeviceRequest::Failure why) {
        popup_.show(why == DeviceRequest::Failure::LinkDown ? kNoLink : kNoAnswer);
    });
}

void f_verTest::built() {
    setSteps(kSteps);
    connect(addAction("Button_FactoryUpdate", "updateButton"), &LabelButton::touched, this,
            [this] { popup_.ask(kUpdate, [this] { update(); }); });
}

void f_verTest::update() {
    if (request_.send(command::UpdateMicrocontroller, 0, 0, {}, {command::FactoryVersionReport},
                      kUpdateTime))
        popup_.wait(kUpdating);
    else
        popup_.show(kNoLink);
}
