#pragma once

#include "screens/common/factory_test_form.h"

/// A window onto the live picture, which lies under the terminal's own on the panel; elsewhere a
/// picture stands in for it.
class CameraPicture : public QWidget {
    Q_OBJECT

 public:
    explicit CameraPicture(QWidget* parent);

 protected:
    void paintEvent(QPaintEvent* event) override;
};

/// A factory test with the live picture, which runs as long as the screen is up.
class CameraTestForm : public FactoryTestForm {
    Q_OBJECT

 public:
    using FactoryTestForm::FactoryTestForm;

    void windowInEvent() override;
    void windowOutEvent() override;
};
