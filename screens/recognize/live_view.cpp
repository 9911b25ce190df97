#include "screens/recognize/live_view.h"

#include "app/main_window.h"
#include "link/device_message.h"
#include "ui_live_view.h"

LiveView::LiveView(QWidget* parent, const QString& title) : WindowForm(parent, title) {}

LiveView::~LiveView() = default;

void LiveView::createForm() {
    ui_ = std::make_unique<Ui::LiveView>();
    ui_->setupUi(this);
    connect(ui_->menuButton, &WidgetButton::touched, this, &LiveView::homeButtonTouch);
}

void LiveView::homeButtonTouch() {
    MainWindow* shell = MainWindow::getMainWindow();
    const bool locked = !fieldText(shell->menuRecord().setup.adminPassword).isEmpty();
    shell->changeWindow(locked ? QStringLiteral("InputAdminPassword")
                               : QStringLiteral("zelMenuWindow"));
}
