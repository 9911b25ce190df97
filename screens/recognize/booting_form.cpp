#include "screens/recognize/booting_form.h"

#include <QFile>

#include "app/screen_titles.h"
#include "app/window_shell.h"
#include "base/device_paths.h"
#include "link/command_code.h"
#include "link/command_parameters.h"
#include "ui/pictures.h"
#include "ui/styler.h"
#include "ui_booting_form.h"

BootingForm::BootingForm(QWidget* parent, const QString& title) : WindowForm(parent, title) {
    timer_.setSingleShot(true);
    connect(&timer_, &QTimer::timeout, this, &BootingForm::bootEnd);
}

BootingForm::~BootingForm() = default;

void BootingForm::createForm() {
    upgrade_ = takeUpgradeResult();
    ui_ = std::make_unique<Ui::BootingForm>();
    ui_->setupUi(this);
}

BootingForm::Upgrade BootingForm::takeUpgradeResult() {
    const bool done = QFile::remove(DevicePaths::at(QStringLiteral("/mnt/data/fw_upgrade_ok")));
    const bool failed = QFile::remove(DevicePaths::at(QStringLiteral("/mnt/data/fw_upgrade_fail")));
    if (done)
        return Upgrade::Done;
    return failed ? Upgrade::Failed : Upgrade::None;
}

void BootingForm::scriptsApplied() {
    ui_->spinner->setVisible(upgrade_ == Upgrade::None);
    ui_->resultIcon->setVisible(upgrade_ != Upgrade::None);
    switch (upgrade_) {
        case Upgrade::None:
            Styler::setText(ui_->textLabel, shell()->getScript(QStringLiteral("Info_Starting")));
            break;
        case Upgrade::Done:
            ui_->resultIcon->setPixmap(Pictures::icon(QStringLiteral("pass.png")));
            Styler::setText(ui_->textLabel, shell()->getScript(QStringLiteral("Info_UpgradeDone")));
            break;
        case Upgrade::Failed:
            ui_->resultIcon->setPixmap(Pictures::icon(QStringLiteral("fail.png")));
            Styler::setText(ui_->textLabel,
                            shell()->getScript(QStringLiteral("ListItem_FwUpgradeFailed")));
            break;
    }
}

void BootingForm::showEvent(QShowEvent* event) {
    WindowForm::showEvent(event);
    timer_.start(upgrade_ == Upgrade::None ? kBootTime : kResultTime);
}

void BootingForm::bootEnd() {
    shell()->SendCommand(command::RecognitionMode, command::recognition::Off, 0);
    shell()->SendCommand(command::LivePicture, command::picture::Shown, 0);
    shell()->SendCommand(command::CameraRun, command::camera::Off, 0);
    // A terminal that says of itself that it was never set up starts with its setup.
    const bool neverSetUp = shell()->settingsArrived() && shell()->menuRecord().commissioned == 0;
    if (shell()->changeWindow(neverSetUp ? screen_title::kSetupMenu : screen_title::kStandby) != 0)
        timer_.start();  // until screens may change
}
