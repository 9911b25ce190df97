#pragma once

#include <memory>

#include "screens/titled_form.h"

namespace Ui {
class SetupMenu;
}

/// Setup of the device, and the way to what goes with it.
class SetupMenu : public TitledForm {
    Q_OBJECT

 public:
    SetupMenu(QWidget* parent, const QString& title);
    ~SetupMenu() override;

 protected:
    void createForm() override;

 private:
    std::unique_ptr<Ui::SetupMenu> ui_;
};
