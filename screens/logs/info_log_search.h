#pragma once

#include <memory>

#include "screens/titled_form.h"

namespace Ui {
class Info_LogSearch;
}

/// Search for logs.
class Info_LogSearch : public TitledForm {
    Q_OBJECT

 public:
    Info_LogSearch(QWidget* parent, const QString& title);
    ~Info_LogSearch() override;

 protected:
    void createForm() override;

 private:
    std::unique_ptr<Ui::Info_LogSearch> ui_;
};
