#pragma once

#include <QElapsedTimer>

#include "screens/common/form_screen.h"
#include "ui_zel_menu_form.h"

/// The administrator's top menu. Tapping its title five times in a row opens the factory tests,
/// which nobody is to find by accident.
class ZelMenuForm : public FormScreen<Ui::ZelMenuForm> {
    Q_OBJECT

 public:
    using FormScreen::FormScreen;

    void windowInEvent() override;
    void settingsChanged(const SettingsChange& change) override;

 protected:
    void built() override;
    bool eventFilter(QObject* watched, QEvent* event) override;

 private:
    void titleTapped();
    /// Attendance and meals share their settings: only those in force can be changed.
    void enableTiles();

    QElapsedTimer firstTap_;
    int taps_ = 0;
};
