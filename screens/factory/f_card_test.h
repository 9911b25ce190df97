#pragma once

#include "screens/common/factory_test_form.h"
#include "screens/common/form_screen.h"
#include "ui_f_card_test.h"

/// Factory test of the card reader.
class f_cardTest : public FormScreen<Ui::f_cardTest, FactoryTestForm> {
    Q_OBJECT

 public:
    using FormScreen::FormScreen;

 protected:
    void built() override;
};
