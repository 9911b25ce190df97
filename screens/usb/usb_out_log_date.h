#pragma once

#include <memory>

#include "screens/titled_form.h"

namespace Ui {
class UsbOutLogDate;
}

/// Dates between which logs are exported.
class UsbOutLogDate : public TitledForm {
    Q_OBJECT

 public:
    UsbOutLogDate(QWidget* parent, const QString& title);
    ~UsbOutLogDate() override;

 protected:
    void createForm() override;

 private:
    std::unique_ptr<Ui::UsbOutLogDate> ui_;
};
