#include "screens/settings/envi_screen_image_select.h"

#include "ui_envi_screen_image_select.h"

EnviScreen_ImageSelect::EnviScreen_ImageSelect(QWidget* parent, const QString& title)
    : TitledForm(parent, title, QStringLiteral("enviScreen_StayWindow")) {}

EnviScreen_ImageSelect::~EnviScreen_ImageSelect() = default;

void EnviScreen_ImageSelect::createForm() {
    ui_ = std::make_unique<Ui::EnviScreen_ImageSelect>();
    ui_->setupUi(this);
    connectForm(ui_->topBar);
}
