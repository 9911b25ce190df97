#pragma once

#include <memory>

#include "screens/titled_form.h"

namespace Ui {
class EnviFaceRecog;
}

/// Settings of the face recognition.
class EnviFaceRecog : public TitledForm {
    Q_OBJECT

 public:
    EnviFaceRecog(QWidget* parent, const QString& title);
    ~EnviFaceRecog() override;

 protected:
    void createForm() override;

 private:
    std::unique_ptr<Ui::EnviFaceRecog> ui_;
};
