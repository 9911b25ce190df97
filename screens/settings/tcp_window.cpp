#include "screens/settings/tcp_window.h"

#include "ui_tcp_window.h"

TCP_Window::TCP_Window(QWidget* parent, const QString& title)
    : TitledForm(parent, title, QStringLiteral("networkMenuWindow")) {}

TCP_Window::~TCP_Window() = default;

void TCP_Window::createForm() {
    ui_ = std::make_unique<Ui::TCP_Window>();
    ui_->setupUi(this);
    connectForm(ui_->topBar);
}
