#pragma once

#include <memory>

#include "app/window_form.h"
#include "ui/visible_timer.h"

namespace Ui {
class BootingForm;
}

/// The first screen after power-on. It tells how a firmware upgrade ended, if there was one, and
/// moves on by itself: to the standby screen, or to the setup of a terminal that has never been
/// set up.
class BootingForm : public WindowForm {
    Q_OBJECT

 public:
    /// How long it stays, in milliseconds: as a rule, and with an upgrade's result to be read.
    static constexpr int kBootTime = 2000;
    static constexpr int kResultTime = 5000;

    BootingForm(QWidget* parent, const QString& title);
    ~BootingForm() override;

    bool timesOut() const override { return false; }
    /// The start is over: moves on. Called by itself when its time is up.
    void bootEnd();

 protected:
    void createForm() override;
    void scriptsApplied() override;
    void showEvent(QShowEvent* event) override;

 private:
    enum class Upgrade { None, Done, Failed };

    /// What the markers of the last upgrade say. They are removed: it is told once.
    static Upgrade takeUpgradeResult();

    std::unique_ptr<Ui::BootingForm> ui_;
    VisibleTimer timer_{this};
    Upgrade upgrade_ = Upgrade::None;
};
