#include "screens/usb/usb_out_log_date.h"

#include "ui_usb_out_log_date.h"

UsbOutLogDate::UsbOutLogDate(QWidget* parent, const QString& title)
    : TitledForm(parent, title, QStringLiteral("usbMenuWindow")) {}

UsbOutLogDate::~UsbOutLogDate() = default;

void UsbOutLogDate::createForm() {
    ui_ = std::make_unique<Ui::UsbOutLogDate>();
    ui_->setupUi(this);
    connectForm(ui_->topBar);
}
