#pragma once

#include <memory>

#include "screens/titled_form.h"

namespace Ui {
class InputDestination;
}

/// Entry of a visitor's destination.
class InputDestination : public TitledForm {
    Q_OBJECT

 public:
    InputDestination(QWidget* parent, const QString& title);
    ~InputDestination() override;

 protected:
    void createForm() override;

 private:
    std::unique_ptr<Ui::InputDestination> ui_;
};
