#pragma once

#include <memory>

#include "screens/titled_form.h"

namespace Ui {
class UserSearch_Card;
}

/// Search for a user by card.
class UserSearch_Card : public TitledForm {
    Q_OBJECT

 public:
    UserSearch_Card(QWidget* parent, const QString& title);
    ~UserSearch_Card() override;

 protected:
    void createForm() override;

 private:
    std::unique_ptr<Ui::UserSearch_Card> ui_;
};
