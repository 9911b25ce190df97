#include "screens/factory/f_memory_test.h"

#include "app/window_shell.h"
#include "link/command_code.h"
#include "ui/label_button.h"

namespace {

enum Text { kReset = 1, kResetOrdered, kNoLink };

constexpr ScreenText kTexts[] = {
    {kReset, "Dialog_FactoryReset", ScreenText::Danger, "Info_FactoryReset",
     "Button_FactoryResetNow"},
    {kResetOrdered, "Dialog_FactoryResetOrdered", ScreenText::Info},
    {kNoLink, "ListItem_NoController", ScreenText::Error},
};

constexpr FactoryStep kSteps[] = {
    {command::FactoryMemoryTest, 0, command::FactoryMemoryReport, "ListItem_FactoryMemory", nullptr,
     &factory_read::result, nullptr, 0, 0, FactoryStep::ByFirstValue, FactoryStep::kAnswerTime,
     "memory"},
};

}  // namespace

f_memoryTest::f_memoryTest(QWidget* parent, const QString& title)
    : FormScreen(parent, title), popup_(this, kTexts) {}

void f_memoryTest::built() {
    setSteps(kSteps);
    LabelButton* reset = addAction("Button_FactoryReset", "resetButton");
    reset->setRole(LabelButton::Delete);
    connect(reset, &LabelButton::touched, this, [this] {
        popup_.ask(kReset, [this] {
            popup_.show(shell()->SendCommand(command::FactoryMemoryReset, 0, 0) ? kResetOrdered
                                                                                : kNoLink);
        });
    });
}
