#pragma once

#include <memory>

#include "screens/titled_form.h"

namespace Ui {
class EnviSound_Alarm;
}

/// Choice of the alarm's sound.
class EnviSound_Alarm : public TitledForm {
    Q_OBJECT

 public:
    EnviSound_Alarm(QWidget* parent, const QString& title);
    ~EnviSound_Alarm() override;

 protected:
    void createForm() override;

 private:
    std::unique_ptr<Ui::EnviSound_Alarm> ui_;
};
