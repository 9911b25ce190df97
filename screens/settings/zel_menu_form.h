#pragma once

#include <QElapsedTimer>
#include <memory>

#include "screens/titled_form.h"

namespace Ui {
class ZelMenuForm;
}

/// The administrator's top menu. Tapping its title five times in a row opens the factory tests,
/// which nobody is to find by accident.
class ZelMenuForm : public TitledForm {
    Q_OBJECT

 public:
    ZelMenuForm(QWidget* parent, const QString& title);
    ~ZelMenuForm() override;

 protected:
    void createForm() override;
    bool eventFilter(QObject* watched, QEvent* event) override;

 private:
    void titleTapped();

    std::unique_ptr<Ui::ZelMenuForm> ui_;
    QElapsedTimer firstTap_;
    int taps_ = 0;
};
