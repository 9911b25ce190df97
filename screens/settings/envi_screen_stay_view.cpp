#include "screens/settings/envi_screen_stay_view.h"

#include "ui_envi_screen_stay_view.h"

EnviScreen_StayView::EnviScreen_StayView(QWidget* parent, const QString& title)
    : TitledForm(parent, title, QStringLiteral("enviScreenWindow")) {}

EnviScreen_StayView::~EnviScreen_StayView() = default;

void EnviScreen_StayView::createForm() {
    ui_ = std::make_unique<Ui::EnviScreen_StayView>();
    ui_->setupUi(this);
    connectForm(ui_->topBar);
}
