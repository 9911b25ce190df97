#pragma once

#include <memory>

#include "screens/titled_form.h"

namespace Ui {
class enviScreen;
}

/// Settings of the screen.
class enviScreen : public TitledForm {
    Q_OBJECT

 public:
    enviScreen(QWidget* parent, const QString& title);
    ~enviScreen() override;

 protected:
    void createForm() override;

 private:
    std::unique_ptr<Ui::enviScreen> ui_;
};
