#pragma once

#include <QWidget>
#include <memory>

namespace Ui {
class InOutButtonForm;
}
class WorkButton;

/// The choice of an attendance event. One touch decides: the chosen button stays marked, and all
/// are switched off until the form is offered again.
class InOutButtonForm : public QWidget {
    Q_OBJECT

 public:
    explicit InOutButtonForm(QWidget* parent = nullptr);
    ~InOutButtonForm() override;

    /// Takes a choice again.
    void reset();

 signals:
    void inTouched();
    void outTouched();
    void outDutyTouched();
    void inDutyTouched();

 protected:
    void showEvent(QShowEvent* event) override;

 private:
    void use(WorkButton* chosen);

    std::unique_ptr<Ui::InOutButtonForm> ui_;
    bool used_ = false;
};
