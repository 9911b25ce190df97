#pragma once

#include "link/device_records.h"
#include "screens/common/device_request.h"
#include "screens/common/form_screen.h"
#include "screens/common/screen_popup.h"
#include "ui_info_key_data_window.h"

/// How many users of each kind the terminal holds.
class Info_KeyDataWindow : public FormScreen<Ui::Info_KeyDataWindow> {
    Q_OBJECT

 public:
    Info_KeyDataWindow(QWidget* parent, const QString& title);

    void windowInEvent() override;
    void deviceAnswer(const DeviceMessage& message) override;
    void settingsChanged(const SettingsChange& change) override;

 protected:
    void scriptsApplied() override;

 private:
    void showCounts();

    DeviceRequest request_{this};
    ScreenPopup popup_;
    UserCounts counts_{};
};
