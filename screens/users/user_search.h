#pragma once

#include <memory>

#include "screens/titled_form.h"

namespace Ui {
class UserSearch;
}

/// Choice of how to look for a user.
class UserSearch : public TitledForm {
    Q_OBJECT

 public:
    UserSearch(QWidget* parent, const QString& title);
    ~UserSearch() override;

 protected:
    void createForm() override;

 private:
    std::unique_ptr<Ui::UserSearch> ui_;
};
