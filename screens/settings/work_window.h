#pragma once

#include <memory>

#include "screens/settings/operation_settings_form.h"

namespace Ui {
class workWindow;
}

/// Settings of attendance mode.
class workWindow : public OperationSettingsForm {
    Q_OBJECT

 public:
    workWindow(QWidget* parent, const QString& title);
    ~workWindow() override;

    void saveButtonTouch() override;

 protected:
    void createForm() override;
    void showRecord() override;

 private:
    /// Only the automatic mode goes by the times of the day.
    void modeSetSlot(int mode);
    void doorUseTouchSlot();
    void recogFailSaveSlot(int choice);

    std::unique_ptr<Ui::workWindow> ui_;
};
