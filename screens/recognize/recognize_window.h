#pragma once

#include <memory>

#include "screens/titled_form.h"

namespace Ui {
class RecognizeWindow;
}

/// Result of one recognition.
class RecognizeWindow : public TitledForm {
    Q_OBJECT

 public:
    RecognizeWindow(QWidget* parent, const QString& title);
    ~RecognizeWindow() override;

 protected:
    void createForm() override;

 private:
    std::unique_ptr<Ui::RecognizeWindow> ui_;
};
