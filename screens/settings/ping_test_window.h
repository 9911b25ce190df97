#pragma once

#include <memory>

#include "screens/titled_form.h"

namespace Ui {
class PingTestWindow;
}

/// Sends pings to an address and shows what comes back.
class PingTestWindow : public TitledForm {
    Q_OBJECT

 public:
    PingTestWindow(QWidget* parent, const QString& title);
    ~PingTestWindow() override;

 protected:
    void createForm() override;

 private:
    std::unique_ptr<Ui::PingTestWindow> ui_;
};
