#pragma once

#include "screens/common/device_request.h"
#include "screens/common/factory_test_form.h"
#include "screens/common/form_screen.h"
#include "screens/common/screen_popup.h"
#include "ui_f_ver_test.h"

/// Factory test of the versions, from where the microcontroller is updated.
class f_verTest : public FormScreen<Ui::f_verTest, FactoryTestForm> {
    Q_OBJECT

 public:
    f_verTest(QWidget* parent, const QString& title);

 protected:
    void built() override;

 private:
    void update();

    ScreenPopup popup_;
    DeviceRequest request_{this};
};
