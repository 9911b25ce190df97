#include "screens/settings/envi_sound_recog_fail.h"

#include "ui_envi_sound_recog_fail.h"

EnviSound_RecogFail::EnviSound_RecogFail(QWidget* parent, const QString& title)
    : TitledForm(parent, title, QStringLiteral("enviSoundWindow")) {}

EnviSound_RecogFail::~EnviSound_RecogFail() = default;

void EnviSound_RecogFail::createForm() {
    ui_ = std::make_unique<Ui::EnviSound_RecogFail>();
    ui_->setupUi(this);
    connectForm(ui_->topBar);
}
