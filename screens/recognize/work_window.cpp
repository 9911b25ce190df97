#include "screens/recognize/work_window.h"

#include "ui_work_window.h"

workWindow::workWindow(QWidget* parent, const QString& title)
    : TitledForm(parent, title, QStringLiteral("zelMenuWindow")) {}

workWindow::~workWindow() = default;

void workWindow::createForm() {
    ui_ = std::make_unique<Ui::workWindow>();
    ui_->setupUi(this);
    connectForm(ui_->topBar);
}
