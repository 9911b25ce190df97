#pragma once

#include <memory>

#include "screens/titled_form.h"

namespace Ui {
class SetupRegistModeForm;
}

/// Settings of the registration mode.
class SetupRegistModeForm : public TitledForm {
    Q_OBJECT

 public:
    SetupRegistModeForm(QWidget* parent, const QString& title);
    ~SetupRegistModeForm() override;

 protected:
    void createForm() override;

 private:
    std::unique_ptr<Ui::SetupRegistModeForm> ui_;
};
