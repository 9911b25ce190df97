#pragma once

#include "screens/common/form_screen.h"
#include "screens/users/enrol_step.h"
#include "ui_input_destination.h"

/// Step of an enrolment: a visitor's destination.
class InputDestination : public FormScreen<Ui::InputDestination, EnrolStep> {
    Q_OBJECT

 public:
    using FormScreen::FormScreen;

    void windowInEvent() override;

 protected:
    void built() override;
    void nextButtonTouch() override;
};
