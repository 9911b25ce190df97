#include "screens/settings/ping_test_window.h"

#include "ui_ping_test_window.h"

PingTestWindow::PingTestWindow(QWidget* parent, const QString& title)
    : TitledForm(parent, title, QStringLiteral("networkMenuWindow")) {}

PingTestWindow::~PingTestWindow() = default;

void PingTestWindow::createForm() {
    ui_ = std::make_unique<Ui::PingTestWindow>();
    ui_->setupUi(this);
    connectForm(ui_->topBar);
}
