#include "screens/recognize/recognize_window.h"

#include "ui_recognize_window.h"

RecognizeWindow::RecognizeWindow(QWidget* parent, const QString& title)
    : TitledForm(parent, title, QStringLiteral("stayWindow")) {}

RecognizeWindow::~RecognizeWindow() = default;

void RecognizeWindow::createForm() {
    ui_ = std::make_unique<Ui::RecognizeWindow>();
    ui_->setupUi(this);
    connectForm(ui_->topBar);
}
