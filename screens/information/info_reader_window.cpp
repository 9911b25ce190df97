#include "screens/information/info_reader_window.h"

#include "ui_info_reader_window.h"

Info_ReaderWindow::Info_ReaderWindow(QWidget* parent, const QString& title)
    : TitledForm(parent, title, QStringLiteral("zelMenuWindow")) {}

Info_ReaderWindow::~Info_ReaderWindow() = default;

void Info_ReaderWindow::createForm() {
    ui_ = std::make_unique<Ui::Info_ReaderWindow>();
    ui_->setupUi(this);
    connectForm(ui_->topBar);
}
