#include "screens/information/info_key_data_window.h"

#include <QLocale>

#include "app/settings_change.h"
#include "app/window_shell.h"
#include "link/command_code.h"
#include "link/device_message.h"

namespace {

constexpr int kAnswerTime = 5000;  // milliseconds
constexpr int kPopupSeconds = 3;
constexpr quint32 kMostUsers = 9999;

enum Popup { kNoController, kNoAnswer };
constexpr ScreenText kTexts[] = {
    {kNoController, "ListItem_NoController", ScreenText::Error},
    {kNoAnswer, "Error_NoResponse", ScreenText::Error},
};

}  // namespace

Info_KeyDataWindow::Info_KeyDataWindow(QWidget* parent, const QString& title)
    : FormScreen(parent, title), popup_(this, kTexts) {
    connect(&request_, &DeviceRequest::failed, this, [this](DeviceRequest::Failure why) {
        popup_.show(why == DeviceRequest::Failure::LinkDown ? kNoController : kNoAnswer,
                    kPopupSeconds);
    });
}

void Info_KeyDataWindow::windowInEvent() {
    FormScreen::windowInEvent();
    counts_ = shell()->menuRecord().users;
    showCounts();
    if (!request_.send(command::AskUserCounts, 0, 0, {}, {command::UserCountsAnswer}, kAnswerTime))
        popup_.show(kNoController, kPopupSeconds);
}

void Info_KeyDataWindow::deviceAnswer(const DeviceMessage& message) {
    FormScreen::deviceAnswer(message);
    // They also come unasked, while users are sent.
    if (message.command != command::UserCountsAnswer)
        return;
    counts_ = message.record<UserCounts>().value_or(counts_);
    showCounts();
}

void Info_KeyDataWindow::settingsChanged(const SettingsChange& change) {
    FormScreen::settingsChanged(change);
    counts_ = change.now.users;
    showCounts();
}

void Info_KeyDataWindow::scriptsApplied() {
    FormScreen::scriptsApplied();
    showCounts();
}

void Info_KeyDataWindow::showCounts() {
    const QLocale locale(shell()->getScript(QStringLiteral("Arg_Locale")).script);
    const QString most = locale.toString(kMostUsers);
    const auto show = [&](CountBar* bar, quint32 count) {
        bar->setCount(count, kMostUsers,
                      QStringLiteral("%1 / %2").arg(locale.toString(count), most));
    };
    show(ui_->allBar, counts_.all);
    show(ui_->generalBar, counts_.general);
    show(ui_->adminBar, counts_.admin);
    show(ui_->inOutBar, counts_.inOut);
    show(ui_->faceOnlyBar, counts_.faceOnly);
    show(ui_->visitorBar, counts_.visitor);
    show(ui_->unsentBar, counts_.unsent);
}
