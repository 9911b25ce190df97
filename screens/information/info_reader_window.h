#pragma once

#include <QElapsedTimer>

#include "screens/common/form_screen.h"
#include "ui/visible_timer.h"
#include "ui_info_reader_window.h"

/// What this terminal is, and the way to all other information.
class Info_ReaderWindow : public FormScreen<Ui::Info_ReaderWindow> {
    Q_OBJECT

 public:
    Info_ReaderWindow(QWidget* parent, const QString& title);

    void windowInEvent() override;
    void settingsChanged(const SettingsChange& change) override;

 protected:
    void scriptsApplied() override;

 private:
    void showFacts();

    QElapsedTimer running_;  // since the start of the program
    VisibleTimer timer_{this};
};
