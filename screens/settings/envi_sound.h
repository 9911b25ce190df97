#pragma once

#include <memory>

#include "screens/titled_form.h"

namespace Ui {
class enviSound;
}

/// Settings of the sound.
class enviSound : public TitledForm {
    Q_OBJECT

 public:
    enviSound(QWidget* parent, const QString& title);
    ~enviSound() override;

 protected:
    void createForm() override;

 private:
    std::unique_ptr<Ui::enviSound> ui_;
};
