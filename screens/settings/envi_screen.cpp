#include "screens/settings/envi_screen.h"

#include "ui_envi_screen.h"

enviScreen::enviScreen(QWidget* parent, const QString& title)
    : TitledForm(parent, title, QStringLiteral("enviWindow")) {}

enviScreen::~enviScreen() = default;

void enviScreen::createForm() {
    ui_ = std::make_unique<Ui::enviScreen>();
    ui_->setupUi(this);
    connectForm(ui_->topBar);
}
