#pragma once

#include <memory>

#include "screens/titled_form.h"

namespace Ui {
class EnviScreen_ImageSelect;
}

/// Choice of the standby screen's picture.
class EnviScreen_ImageSelect : public TitledForm {
    Q_OBJECT

 public:
    EnviScreen_ImageSelect(QWidget* parent, const QString& title);
    ~EnviScreen_ImageSelect() override;

 protected:
    void createForm() override;

 private:
    std::unique_ptr<Ui::EnviScreen_ImageSelect> ui_;
};
