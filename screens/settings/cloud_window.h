#pragma once

#include <memory>

#include "screens/titled_form.h"

namespace Ui {
class Cloud_Window;
}

/// The management service.
class Cloud_Window : public TitledForm {
    Q_OBJECT

 public:
    Cloud_Window(QWidget* parent, const QString& title);
    ~Cloud_Window() override;

 protected:
    void createForm() override;

 private:
    std::unique_ptr<Ui::Cloud_Window> ui_;
};
