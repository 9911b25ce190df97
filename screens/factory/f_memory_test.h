#pragma once

#include "screens/common/factory_test_form.h"
#include "screens/common/form_screen.h"
#include "screens/common/screen_popup.h"
#include "ui_f_memory_test.h"

/// Factory test of the memory, from where all that it holds is reset.
class f_memoryTest : public FormScreen<Ui::f_memoryTest, FactoryTestForm> {
    Q_OBJECT

 public:
    f_memoryTest(QWidget* parent, const QString& title);

 protected:
    void built() override;

 private:
    ScreenPopup popup_;
};
