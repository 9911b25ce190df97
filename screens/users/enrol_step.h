#pragma once

#include "screens/common/titled_form.h"

/// A screen of an enrolment. Whoever breaks it off gets back to where it began: the user menu, or
/// the standby screen when it was begun at the live view or by the management service. The way
/// back leads from step to step as long as there is one before.
class EnrolStep : public TitledForm {
    Q_OBJECT

 public:
    using TitledForm::TitledForm;

 protected:
    void prevButtonTouch() override;
    void homeButtonTouch() override;

 private:
    void leave();
};
