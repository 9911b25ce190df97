#include "screens/settings/upgrading_window.h"

#include "ui_upgrading_window.h"

upgradingWindow::upgradingWindow(QWidget* parent, const QString& title)
    : TitledForm(parent, title, QString()) {}

upgradingWindow::~upgradingWindow() = default;

void upgradingWindow::createForm() {
    ui_ = std::make_unique<Ui::upgradingWindow>();
    ui_->setupUi(this);
    connectForm(ui_->topBar);
}
