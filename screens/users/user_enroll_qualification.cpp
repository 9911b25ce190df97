#include "screens/users/user_enroll_qualification.h"

#include <QLocale>

#include "app/window_shell.h"
#include "link/command_code.h"
#include "link/record_values.h"
#include "ui/styler.h"

namespace {

/// The controller takes one more; beyond that it holds as many as it can.
constexpr std::uint32_t kMostUsers = 9999;

constexpr ScreenText kTexts[] = {{1, "Error_MaxUsersExcceeded", ScreenText::Error}};

QString grouped(std::uint32_t number) {
    return QLocale(QLocale::English).toString(number);
}

}  // namespace

void UserEnroll_Qualification::built() {
    popup().add(kTexts);
}

void UserEnroll_Qualification::setParam(QVariant param) {
    if (param.type() == QVariant::Int)
        setEnrollMode(param.toInt());
    FormScreen::setParam(std::move(param));
    if (isVisible())
        windowInEvent();
}

void UserEnroll_Qualification::setEnrollMode(int mode) {
    setFlow(EnrolFlow::begin(mode, *shell()));
}

void UserEnroll_Qualification::windowInEvent() {
    FormScreen::windowInEvent();
    popup().close();
    showUser();
    showCount();
    shell()->SendCommand(command::AskUserCounts, 0, 0);
    // At the live view it has been asked for already.
    const bool asks = flow().isRunning() && flow().mode() != AuthMethod::FromLiveView &&
                      !flow().isSupplement() && user().customerId[0] == '\0';
    if (asks && shell()->menuRecord().registration.autoId == 1)
        shell()->SendCommand(command::StartEnrolment, 0, 0);
}

void UserEnroll_Qualification::settingsChanged(const SettingsChange& change) {
    FormScreen::settingsChanged(change);
    showCount();
}

void UserEnroll_Qualification::showUser() {
    const _gui_user_ now = user();
    ui_->levelRow->setVisible((flow().rows() & EnrolFlow::LevelRow) != 0);
    ui_->rightsRow->setVisible((flow().rows() & EnrolFlow::RightsRow) != 0);
    ui_->glassesRow->setVisible((flow().rows() & EnrolFlow::GlassesRow) != 0);
    say(flow().rows() == EnrolFlow::GlassesRow ? QStringLiteral("Info_SelectGlasses")
                                               : QStringLiteral("Info_UserLevelAndQualification"));
    const bool administrator = flow().isRunning() && now.level == UserLevel::Administrator;
    ui_->levelToggle->setCurrentIndex(administrator ? 1 : 0);
    ui_->rightsToggle->setCurrentIndex(now.rights == UserRights::InOutOnly ? 1 : 0);
    ui_->glassesToggle->setCurrentIndex(now.glasses == 1 ? 1 : 0);
}

void UserEnroll_Qualification::say(const QString& key) {
    ui_->promptLabel->setProperty("scriptKey", key);
    Styler::setText(ui_->promptLabel, shell()->getScript(key));
}

void UserEnroll_Qualification::showCount() {
    const QString line =
        shell()
            ->getScript(QStringLiteral("Arg_UserCount"))
            .script.arg(grouped(shell()->menuRecord().users.all), grouped(kMostUsers));
    ui_->countText->setText(line);
}

void UserEnroll_Qualification::nextButtonTouch() {
    _gui_user_ now = user();
    if ((flow().rows() & EnrolFlow::LevelRow) != 0) {
        // A visitor who is there already stays one.
        if (ui_->levelToggle->currentIndex() == 1)
            now.level = UserLevel::Administrator;
        else if (!flow().isSupplement() || now.level == UserLevel::Administrator)
            now.level = UserLevel::General;
    }
    if ((flow().rows() & EnrolFlow::RightsRow) != 0)
        now.rights = ui_->rightsToggle->currentIndex() == 1 ? UserRights::InOutOnly
                                                            : UserRights::AlarmAndInOut;
    if ((flow().rows() & EnrolFlow::GlassesRow) != 0)
        now.glasses = ui_->glassesToggle->currentIndex() == 1 ? 1 : 0;
    setUser(now);
    if (!flow().isSupplement() && shell()->menuRecord().users.all > kMostUsers) {
        popup().show(1);
        return;
    }
    EnrolStep::nextButtonTouch();
}
