#include "screens/usb/usb_menu.h"

#include "ui_usb_menu.h"

UsbMenu::UsbMenu(QWidget* parent, const QString& title)
    : TitledForm(parent, title, QStringLiteral("zelMenuWindow")) {}

UsbMenu::~UsbMenu() = default;

void UsbMenu::createForm() {
    ui_ = std::make_unique<Ui::UsbMenu>();
    ui_->setupUi(this);
    connectForm(ui_->topBar);
}
