#pragma once

#include <memory>

#include "screens/common/screen_popup.h"
#include "screens/common/titled_form.h"

namespace Ui {
class UsbOutLogDate;
}

/// The days whose logs are exported, or all of them.
class UsbOutLogDate : public TitledForm {
    Q_OBJECT

 public:
    UsbOutLogDate(QWidget* parent, const QString& title);
    ~UsbOutLogDate() override;

    /// Starts with the present month up to today.
    void windowInEvent() override;

 public slots:
    /// Asks for the export, unless the dates make no sense.
    void exportButtonTouch();

 protected:
    void createForm() override;
    void prevButtonTouch() override;

 private:
    void rangeTouch();

    std::unique_ptr<Ui::UsbOutLogDate> ui_;
    ScreenPopup popup_;
};
