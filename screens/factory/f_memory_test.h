#pragma once

#include "screens/common/form_screen.h"
#include "ui_f_memory_test.h"

/// Factory test of the memory.
class f_memoryTest : public FormScreen<Ui::f_memoryTest> {
    Q_OBJECT

 public:
    using FormScreen::FormScreen;
};
