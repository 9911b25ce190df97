#pragma once

#include <memory>

#include "screens/titled_form.h"

namespace Ui {
class EnviScreen_StayView;
}

/// What the standby screen shows.
class EnviScreen_StayView : public TitledForm {
    Q_OBJECT

 public:
    EnviScreen_StayView(QWidget* parent, const QString& title);
    ~EnviScreen_StayView() override;

 protected:
    void createForm() override;

 private:
    std::unique_ptr<Ui::EnviScreen_StayView> ui_;
};
