#include "screens/settings/envi_sound_alarm.h"

#include "ui_envi_sound_alarm.h"

EnviSound_Alarm::EnviSound_Alarm(QWidget* parent, const QString& title)
    : TitledForm(parent, title, QStringLiteral("enviSoundWindow")) {}

EnviSound_Alarm::~EnviSound_Alarm() = default;

void EnviSound_Alarm::createForm() {
    ui_ = std::make_unique<Ui::EnviSound_Alarm>();
    ui_->setupUi(this);
    connectForm(ui_->topBar);
}
