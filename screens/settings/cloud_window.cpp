#include "screens/settings/cloud_window.h"

#include "ui_cloud_window.h"

Cloud_Window::Cloud_Window(QWidget* parent, const QString& title)
    : TitledForm(parent, title, QStringLiteral("networkMenuWindow")) {}

Cloud_Window::~Cloud_Window() = default;

void Cloud_Window::createForm() {
    ui_ = std::make_unique<Ui::Cloud_Window>();
    ui_->setupUi(this);
    connectForm(ui_->topBar);
}
