#include "screens/settings/envi_sound.h"

#include <iterator>

#include "app/screen_titles.h"
#include "app/window_shell.h"
#include "link/command_code.h"
#include "ui/plus_minus.h"

namespace {

/// By their numbers in the record.
constexpr const char* const kSounds[] = {
    "ListItem_SoundSiren", "ListItem_SoundBell",  "ListItem_SoundBuzzer",
    "ListItem_SoundChime", "ListItem_SoundBeeps",
};
constexpr std::uint32_t kLast = std::size(kSounds) - 1;

}  // namespace

void enviSound::built() {
    slice(&_gui_menu_::sound, command::SaveSoundSettings, command::SoundSettingsSaved);
    bind(ui_->volume, &SoundBlock::volume);
    atOnce(ui_->volume, [](const _gui_menu_& tried) {
        shell()->SendCommand(command::SetVolume, command::save::Settings, tried.sound.volume);
    });
    bindPart(ui_->alarmSoundRow, &SoundBlock::alarmSound, screen_title::kAlarmSound, kLast);
    atOnce(ui_->alarmSoundRow, [](const _gui_menu_& tried) {
        shell()->SendCommand(command::ChooseSound, command::sound_choice::Alarm,
                             tried.sound.alarmSound);
    });
    bindPart(ui_->recogFailSoundRow, &SoundBlock::recognitionFailSound,
             screen_title::kRecognitionFailSound, kLast);
    atOnce(ui_->recogFailSoundRow, [](const _gui_menu_& tried) {
        shell()->SendCommand(command::ChooseSound, command::sound_choice::RecognitionFailure,
                             tried.sound.recognitionFailSound);
    });
}

void enviSound::valuesShown() {
    for (ListRow* row : {ui_->alarmSoundRow, ui_->recogFailSoundRow})
        row->setValue(shell()->getScript(QLatin1String(kSounds[partValue(row)])).script);
}
