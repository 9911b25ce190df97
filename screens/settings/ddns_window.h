#pragma once

#include <memory>

#include "screens/titled_form.h"

namespace Ui {
class ddns_window;
}

/// The dynamic name service.
class ddns_window : public TitledForm {
    Q_OBJECT

 public:
    ddns_window(QWidget* parent, const QString& title);
    ~ddns_window() override;

 protected:
    void createForm() override;

 private:
    std::unique_ptr<Ui::ddns_window> ui_;
};
