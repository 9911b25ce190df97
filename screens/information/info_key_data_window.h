#pragma once

#include <memory>

#include "screens/titled_form.h"

namespace Ui {
class Info_KeyDataWindow;
}

/// The card keys.
class Info_KeyDataWindow : public TitledForm {
    Q_OBJECT

 public:
    Info_KeyDataWindow(QWidget* parent, const QString& title);
    ~Info_KeyDataWindow() override;

 protected:
    void createForm() override;

 private:
    std::unique_ptr<Ui::Info_KeyDataWindow> ui_;
};
