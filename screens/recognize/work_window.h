#pragma once

#include <memory>

#include "screens/titled_form.h"

namespace Ui {
class workWindow;
}

/// Settings of attendance mode.
class workWindow : public TitledForm {
    Q_OBJECT

 public:
    workWindow(QWidget* parent, const QString& title);
    ~workWindow() override;

 protected:
    void createForm() override;

 private:
    std::unique_ptr<Ui::workWindow> ui_;
};
