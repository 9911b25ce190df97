#include "screens/recognize/food_window.h"

#include "ui_food_window.h"

FoodWindow::FoodWindow(QWidget* parent, const QString& title)
    : TitledForm(parent, title, QStringLiteral("zelMenuWindow")) {}

FoodWindow::~FoodWindow() = default;

void FoodWindow::createForm() {
    ui_ = std::make_unique<Ui::FoodWindow>();
    ui_->setupUi(this);
    connectForm(ui_->topBar);
}
