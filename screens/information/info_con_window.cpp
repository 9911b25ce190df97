#include "screens/information/info_con_window.h"

#include "ui_info_con_window.h"

info_conWindow::info_conWindow(QWidget* parent, const QString& title)
    : TitledForm(parent, title, QStringLiteral("info_readerWindow")) {}

info_conWindow::~info_conWindow() = default;

void info_conWindow::createForm() {
    ui_ = std::make_unique<Ui::info_conWindow>();
    ui_->setupUi(this);
    connectForm(ui_->topBar);
}
