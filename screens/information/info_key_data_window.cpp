#include "screens/information/info_key_data_window.h"

#include "ui_info_key_data_window.h"

Info_KeyDataWindow::Info_KeyDataWindow(QWidget* parent, const QString& title)
    : TitledForm(parent, title, QStringLiteral("info_readerWindow")) {}

Info_KeyDataWindow::~Info_KeyDataWindow() = default;

void Info_KeyDataWindow::createForm() {
    ui_ = std::make_unique<Ui::Info_KeyDataWindow>();
    ui_->setupUi(this);
    connectForm(ui_->topBar);
}
