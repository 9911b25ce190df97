#pragma once

#include <memory>

#include "screens/titled_form.h"

namespace Ui {
class TCP_Window;
}

/// The terminal's own address.
class TCP_Window : public TitledForm {
    Q_OBJECT

 public:
    TCP_Window(QWidget* parent, const QString& title);
    ~TCP_Window() override;

 protected:
    void createForm() override;

 private:
    std::unique_ptr<Ui::TCP_Window> ui_;
};
