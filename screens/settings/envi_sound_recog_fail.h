#pragma once

#include <memory>

#include "screens/titled_form.h"

namespace Ui {
class EnviSound_RecogFail;
}

/// Choice of the sound of a failed recognition.
class EnviSound_RecogFail : public TitledForm {
    Q_OBJECT

 public:
    EnviSound_RecogFail(QWidget* parent, const QString& title);
    ~EnviSound_RecogFail() override;

 protected:
    void createForm() override;

 private:
    std::unique_ptr<Ui::EnviSound_RecogFail> ui_;
};
