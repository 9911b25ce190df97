#pragma once

#include <memory>

#include "screens/titled_form.h"

namespace Ui {
class FactoryMenu;
}

/// The factory tests.
class FactoryMenu : public TitledForm {
    Q_OBJECT

 public:
    FactoryMenu(QWidget* parent, const QString& title);
    ~FactoryMenu() override;

 protected:
    void createForm() override;

 private:
    std::unique_ptr<Ui::FactoryMenu> ui_;
};
