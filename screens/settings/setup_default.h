#pragma once

#include <memory>

#include "screens/titled_form.h"

namespace Ui {
class SetupDefault;
}

/// Resets logs, settings or everything.
class SetupDefault : public TitledForm {
    Q_OBJECT

 public:
    SetupDefault(QWidget* parent, const QString& title);
    ~SetupDefault() override;

 protected:
    void createForm() override;

 private:
    std::unique_ptr<Ui::SetupDefault> ui_;
};
