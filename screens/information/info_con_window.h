#pragma once

#include "link/device_records.h"
#include "screens/common/device_request.h"
#include "screens/common/form_screen.h"
#include "ui/visible_timer.h"
#include "ui_info_con_window.h"

/// Whether the terminal reaches whom it has to do with, and since when.
class info_conWindow : public FormScreen<Ui::info_conWindow> {
    Q_OBJECT

 public:
    info_conWindow(QWidget* parent, const QString& title);

    void windowInEvent() override;
    void windowOutEvent() override;
    void deviceAnswer(const DeviceMessage& message) override;
    void peersChanged() override;
    void settingsChanged(const SettingsChange& change) override;
    /// How the controller stands with the access controller.
    void UpdateHostInfo(const HostInfo& info);

 protected:
    void scriptsApplied() override;

 private:
    void showPeers();
    void showController();
    void showService();
    void showAccess();
    void showNetwork();

    VisibleTimer timer_{this};
};
