#pragma once

#include "screens/common/form_screen.h"
#include "ui_f_ver_test.h"

/// Factory test of the versions.
class f_verTest : public FormScreen<Ui::f_verTest> {
    Q_OBJECT

 public:
    using FormScreen::FormScreen;
};
