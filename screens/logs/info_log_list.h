#pragma once

#include <memory>

#include "screens/titled_form.h"

namespace Ui {
class Info_logList;
}

/// The logs that were found.
class Info_logList : public TitledForm {
    Q_OBJECT

 public:
    Info_logList(QWidget* parent, const QString& title);
    ~Info_logList() override;

 protected:
    void createForm() override;

 private:
    std::unique_ptr<Ui::Info_logList> ui_;
};
