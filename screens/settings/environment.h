#pragma once

#include <memory>

#include "screens/titled_form.h"

namespace Ui {
class environment;
}

/// The environment menu: face recognition, screen, sound.
class environment : public TitledForm {
    Q_OBJECT

 public:
    environment(QWidget* parent, const QString& title);
    ~environment() override;

 protected:
    void createForm() override;

 private:
    std::unique_ptr<Ui::environment> ui_;
};
