#pragma once

#include <memory>

#include "screens/titled_form.h"

namespace Ui {
class f_netTest;
}

/// Factory test of the RS-422 line and the network.
class f_netTest : public TitledForm {
    Q_OBJECT

 public:
    f_netTest(QWidget* parent, const QString& title);
    ~f_netTest() override;

 protected:
    void createForm() override;

 private:
    std::unique_ptr<Ui::f_netTest> ui_;
};
