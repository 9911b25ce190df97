#pragma once

#include <memory>

#include "screens/titled_form.h"

namespace Ui {
class info_conWindow;
}

/// The terminal's connections.
class info_conWindow : public TitledForm {
    Q_OBJECT

 public:
    info_conWindow(QWidget* parent, const QString& title);
    ~info_conWindow() override;

 protected:
    void createForm() override;

 private:
    std::unique_ptr<Ui::info_conWindow> ui_;
};
