#pragma once

#include <memory>

#include "screens/titled_form.h"

namespace Ui {
class NetworkMenuForm;
}

/// The network menu.
class NetworkMenuForm : public TitledForm {
    Q_OBJECT

 public:
    NetworkMenuForm(QWidget* parent, const QString& title);
    ~NetworkMenuForm() override;

 protected:
    void createForm() override;

 private:
    std::unique_ptr<Ui::NetworkMenuForm> ui_;
};
