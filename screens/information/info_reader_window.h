#pragma once

#include <memory>

#include "screens/titled_form.h"

namespace Ui {
class Info_ReaderWindow;
}

/// What this terminal is, and the way to all other information.
class Info_ReaderWindow : public TitledForm {
    Q_OBJECT

 public:
    Info_ReaderWindow(QWidget* parent, const QString& title);
    ~Info_ReaderWindow() override;

 protected:
    void createForm() override;

 private:
    std::unique_ptr<Ui::Info_ReaderWindow> ui_;
};
