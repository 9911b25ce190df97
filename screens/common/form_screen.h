#pragma once

#include <memory>

#include "screens/common/titled_form.h"

/// A screen that is made of the form @p Form, which has a bar "topBar". Such a screen says only
/// what is its own; one that only leads to others says nothing at all. @p Base is TitledForm or
/// something more of it.
template <class Form, class Base = TitledForm>
class FormScreen : public Base {
 public:
    using Base::Base;

 protected:
    void createForm() final {
        ui_ = std::make_unique<Form>();
        ui_->setupUi(this);
        Base::connectForm(ui_->topBar);
        built();
    }
    /// Called once, when the form is there and its ways are connected.
    virtual void built() {}

    /// Null until then.
    std::unique_ptr<Form> ui_;
};
