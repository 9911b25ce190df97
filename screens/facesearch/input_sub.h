#pragma once

#include <memory>

#include "screens/titled_form.h"

namespace Ui {
class InputSub;
}

/// Entry of a customer number at the door.
class InputSub : public TitledForm {
    Q_OBJECT

 public:
    InputSub(QWidget* parent, const QString& title);
    ~InputSub() override;

 protected:
    void createForm() override;

 private:
    std::unique_ptr<Ui::InputSub> ui_;
};
