#pragma once

#include "screens/recognize/ok_form.h"

/// Greets whoever was recognised, or says why the door stays closed.
class HelloForm : public OkForm {
    Q_OBJECT

 public:
    using OkForm::OkForm;

    void welcome();
    /// @p result as in RecognitionResult, other than accepted and registered.
    void refuse(int result);
};
