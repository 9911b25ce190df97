#pragma once

#include "screens/common/form_screen.h"
#include "screens/common/screen_popup.h"
#include "ui_usb_out_log_date.h"

/// The days whose logs are exported, or all of them.
class UsbOutLogDate : public FormScreen<Ui::UsbOutLogDate> {
    Q_OBJECT

 public:
    UsbOutLogDate(QWidget* parent, const QString& title);

    /// Starts with the present month up to today.
    void windowInEvent() override;

 public slots:
    /// Asks for the export, unless the dates make no sense.
    void exportButtonTouch();

 protected:
    void built() override;
    void prevButtonTouch() override;

 private:
    void rangeTouch();

    ScreenPopup popup_;
};
