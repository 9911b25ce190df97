#include "screens/settings/ddns_window.h"

#include "ui_ddns_window.h"

ddns_window::ddns_window(QWidget* parent, const QString& title)
    : TitledForm(parent, title, QStringLiteral("networkMenuWindow")) {}

ddns_window::~ddns_window() = default;

void ddns_window::createForm() {
    ui_ = std::make_unique<Ui::ddns_window>();
    ui_->setupUi(this);
    connectForm(ui_->topBar);
}
