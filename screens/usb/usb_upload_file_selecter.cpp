#include "screens/usb/usb_upload_file_selecter.h"

#include "ui_usb_upload_file_selecter.h"

UsbUploadFileSelecter::UsbUploadFileSelecter(QWidget* parent, const QString& title)
    : TitledForm(parent, title, QStringLiteral("usbMenuWindow")) {}

UsbUploadFileSelecter::~UsbUploadFileSelecter() = default;

void UsbUploadFileSelecter::createForm() {
    ui_ = std::make_unique<Ui::UsbUploadFileSelecter>();
    ui_->setupUi(this);
    connectForm(ui_->topBar);
}
