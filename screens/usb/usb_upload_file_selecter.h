#pragma once

#include <memory>

#include "screens/titled_form.h"

namespace Ui {
class UsbUploadFileSelecter;
}

/// Picker for a file on the USB stick.
class UsbUploadFileSelecter : public TitledForm {
    Q_OBJECT

 public:
    UsbUploadFileSelecter(QWidget* parent, const QString& title);
    ~UsbUploadFileSelecter() override;

 protected:
    void createForm() override;

 private:
    std::unique_ptr<Ui::UsbUploadFileSelecter> ui_;
};
