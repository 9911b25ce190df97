#include "screens/settings/envi_sound.h"

#include "ui_envi_sound.h"

enviSound::enviSound(QWidget* parent, const QString& title)
    : TitledForm(parent, title, QStringLiteral("enviWindow")) {}

enviSound::~enviSound() = default;

void enviSound::createForm() {
    ui_ = std::make_unique<Ui::enviSound>();
    ui_->setupUi(this);
    connectForm(ui_->topBar);
}
