#pragma once

#include "screens/recognize/ok_form.h"

/// Greets whoever was recognised, or says why the door stays closed.
class HelloForm : public OkForm {
    Q_OBJECT

 public:
    using OkForm::OkForm;

    void welcome();
    /// @p nextMeal: nothing but the time stands in the way.
    void refuse(bool nextMeal);
};
