#include "screens/settings/envi_screen.h"

#include "app/screen_titles.h"
#include "app/window_shell.h"
#include "link/command_code.h"
#include "screens/settings/standby_choice.h"
#include "ui/combo.h"
#include "ui/plus_minus.h"
#include "ui/toggle.h"

void enviScreen::built() {
    slice(&_gui_menu_::screen, command::SaveScreenSettings, command::ScreenSettingsSaved);
    bind(ui_->brightness, &ScreenBlock::brightness);
    atOnce(ui_->brightness, [](const _gui_menu_& tried) {
        shell()->SendCommand(command::SetBrightness, command::save::Settings,
                             tried.screen.brightness);
    });
    bind(ui_->screenOffCombo, &ScreenBlock::sleepMode);
    bindPart(
        ui_->stayViewRow,
        [](const _gui_menu_& record) { return StandbyChoice::of(record.screen).number(); },
        [](_gui_menu_& record, std::uint32_t number) {
            StandbyChoice::of(number).put(record.screen);
        },
        screen_title::kStandbyScreen);
    bind(ui_->statusLedToggle, &ScreenBlock::statusLed, kInverted);
    bind(ui_->menuTimeoutCombo, &ScreenBlock::menuTimeout);
    bind(ui_->showPicturesToggle, &ScreenBlock::showThumbnail, kInverted);
}

void enviScreen::valuesShown() {
    const auto chosen = StandbyChoice::of(partValue(ui_->stayViewRow));
    QString value = shell()->getScript(QStringLiteral("ListItem_StandbyClock")).script;
    if (chosen.showsPicture)
        value =
            shell()->getScript(QStringLiteral("Arg_PictureNumber")).script.arg(chosen.ordinal());
    ui_->stayViewRow->setValue(value);
}
