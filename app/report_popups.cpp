#include "app/report_popups.h"

#include <QDateTime>
#include <utility>

#include "base/clock.h"
#include "link/command_code.h"
#include "link/command_parameters.h"
#include "ui/dialog_form.h"
#include "ui/notice_strip.h"

namespace {

constexpr int kLogFullAutoClose = 10000;  // milliseconds
constexpr int kNoticeAutoClose = 5000;
constexpr int kStripSeconds = 3;
constexpr int kAnyOther = -1;

enum class Kind {
    Result,    // on the shared popup dialog, until it is closed
    Notice,    // on a strip that leaves the screen to the person at the door, stamped with the time
    Question,  // asks whether logs may be deleted
};

struct Report {
    int command;
    int p1;
    Kind kind;
    const char* key;
    bool isError;
    const char* screen = nullptr;  // to change to first
};

// The first row that fits counts.
constexpr Report kReports[] = {
    {command::EnrolmentRefused, command::refused::StoreFull, Kind::Result,
     "Error_MaxUsersExcceeded", true},
    {command::EnrolmentRefused, command::refused::EnrolmentRunning, Kind::Result,
     "Error_EnrollingUsers", true},
    {command::EnrolmentRefused, kAnyOther, Kind::Result, "Error_NoResponse", true},
    {command::UserDeleteResult, command::answer::Done, Kind::Result, "ListItem_UserDeleted", false},
    {command::UserDeleteResult, kAnyOther, Kind::Result, "ListItem_FailedDeleted", true},
    {command::FirmwareUpdateAnswer, command::answer::Done, Kind::Result, "ListItem_FwRestart",
     false, "upgradingWindow"},
    {command::FirmwareUpdateAnswer, kAnyOther, Kind::Result, "ListItem_FwUpgradeFailed", true,
     "stayWindow"},
    {command::LogStoreReport, command::log_store::Emptied, Kind::Result, "ListItem_LogStoreEmptied",
     false},
    {command::LogStoreReport, command::log_store::NearlyFull, Kind::Question,
     "ListItem_LogStoreNearlyFull", false},
    {command::AccessEvent, command::event::New, Kind::Notice, "Info_AccessEvent", false},
};

const Report* find(int command, int p1) {
    for (const Report& report : kReports) {
        if (report.command == command && (report.p1 == p1 || report.p1 == kAnyOther))
            return &report;
    }
    return nullptr;
}

}  // namespace

ReportPopups::ReportPopups(std::function<ScriptHandler::Script(const QString&)> scripts,
                           QWidget* window)
    : QObject(window),
      scripts_(std::move(scripts)),
      popup_(new DialogForm(window)),
      logFull_(new DialogForm(window, kLogFullAutoClose)),
      notice_(new DialogForm(window, kNoticeAutoClose)),
      strip_(new NoticeStrip(window, kStripSeconds)) {
    popup_->setObjectName(QStringLiteral("popupForm"));
    popup_->setButtonType(DialogForm::OkButton);
    popup_->checkWindowChange(true);
    logFull_->setObjectName(QStringLiteral("logFullDialog"));
    logFull_->setButtonType(DialogForm::OkCancelButtons);
    notice_->setObjectName(QStringLiteral("noticeDialog"));
    strip_->setObjectName(QStringLiteral("noticeStrip"));

    connect(logFull_, &DialogForm::touchOk, this, &ReportPopups::deleteLogsWanted);
    connect(logFull_, &DialogForm::closePopup, this, &ReportPopups::keepLogsWanted);
    for (DialogForm* dialog : {popup_, logFull_, notice_}) {
        connect(dialog, &DialogForm::touchOk, this, [this, dialog] { dialogClosed(dialog); });
        if (dialog != popup_)
            connect(dialog, &DialogForm::closePopup, this,
                    [this, dialog] { dialogClosed(dialog); });
    }
}

void ReportPopups::windowChanged() {
    popup_->windowChanged();
}

void ReportPopups::windowRaised() {
    strip_->raise();
}

void ReportPopups::show(int command, int p1) {
    const Report* report = find(command, p1);
    if (report == nullptr)
        return;
    // First, for the change takes the popup of the old screen away.
    if (report->screen != nullptr)
        emit screenWanted(QLatin1String(report->screen));
    switch (report->kind) {
        case Kind::Result:
            present(popup_, QLatin1String(report->key), report->isError);
            break;
        case Kind::Notice: {
            ScriptHandler::Script text = scripts_(QLatin1String(report->key));
            const QString time = scripts_(QStringLiteral("Arg_EventTime")).script;
            text.script += QStringLiteral("  ") + Clock::now().toString(time);
            strip_->setText(text);
            strip_->hide();
            strip_->show();
            strip_->raise();
            break;
        }
        case Kind::Question:
            present(logFull_, QLatin1String(report->key), report->isError);
            break;
    }
}

void ReportPopups::showNotice(const QString& key) {
    present(notice_, key, false);
}

void ReportPopups::present(DialogForm* dialog, const QString& key, bool isError) {
    if (dialog == popup_)
        popupShowsFaults_ = false;
    DialogForm::Icon icon = DialogForm::Icon::Info;
    if (isError)
        icon = DialogForm::Icon::Error;
    else if (dialog == logFull_)
        icon = DialogForm::Icon::Question;
    dialog->setIcon(icon);
    dialog->setText(scripts_(key));
    dialog->setOkText(scripts_(QStringLiteral("TopMenu_OK")));
    dialog->setCancelText(scripts_(QStringLiteral("TopMenu_Cancel")));
    dialog->show();
    dialog->raise();
    if (isError)
        emit errorShown();
}

void ReportPopups::showFaults(const QStringList& keys, bool anyFault) {
    popup_->hide();
    faults_ = keys;
    popupShowsFaults_ = anyFault;
    if (!anyFault)
        return;
    ScriptHandler::Script text;
    QStringList lines;
    for (const QString& key : keys) {
        text = scripts_(key);
        lines.append(text.script);
    }
    text.script = lines.join(QLatin1Char('\n'));
    popup_->setIcon(DialogForm::Icon::Error);
    popup_->setText(text);
    popup_->setButtonType(DialogForm::OkButton);
    popup_->setOkText(scripts_(QStringLiteral("TopMenu_OK")));
    popup_->show();
    popup_->raise();
}

void ReportPopups::dialogClosed(DialogForm* dialog) {
    if (dialog == popup_ && popupShowsFaults_)
        faults_.clear();
    else if (!faults_.isEmpty())
        showFaults(faults_, true);
}
