#pragma once

#include "screens/common/form_screen.h"
#include "ui_factory_menu.h"

/// The factory tests.
class FactoryMenu : public FormScreen<Ui::FactoryMenu> {
    Q_OBJECT

 public:
    using FormScreen::FormScreen;
};
