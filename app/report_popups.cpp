#include "app/report_popups.h"

#include <QDateTime>
#include <utility>

#include "app/screen_titles.h"
#include "base/clock.h"
#include "link/command_code.h"
#include "link/command_parameters.h"
#include "ui/notice_strip.h"

namespace {

constexpr int kLogFullAutoClose = 10000;  // milliseconds
constexpr int kNoticeAutoClose = 5000;
constexpr int kStripSeconds = 3;
constexpr int kAnyOther = -1;

enum class Kind {
    Result,    // on the shared popup dialog, until it is closed
    Question,  // asks whether logs may be deleted
};

using Icon = DialogForm::Icon;

struct Report {
    int command;
    int p1;
    Kind kind;
    const char* key;
    Icon icon;
    QLatin1String screen = {};  // to change to first
};

// The first row that fits counts.
constexpr Report kReports[] = {
    {command::EnrolmentRefused, command::refused::StoreFull, Kind::Result,
     "Error_MaxUsersExcceeded", Icon::Error},
    {command::EnrolmentRefused, command::refused::EnrolmentRunning, Kind::Result,
     "Error_EnrollingUsers", Icon::Error},
    {command::EnrolmentRefused, kAnyOther, Kind::Result, "Error_NoResponse", Icon::Error},
    {command::UserDeleteResult, command::answer::Done, Kind::Result, "ListItem_UserDeleted",
     Icon::Pass},
    {command::UserDeleteResult, kAnyOther, Kind::Result, "ListItem_FailedDeleted", Icon::Error},
    {command::FirmwareUpdateAnswer, command::answer::Done, Kind::Result, "ListItem_FwRestart",
     Icon::Pass, screen_title::kUpgrading},
    {command::FirmwareUpdateAnswer, kAnyOther, Kind::Result, "ListItem_FwUpgradeFailed",
     Icon::Error, screen_title::kStandby},
    {command::LogStoreReport, command::log_store::Emptied, Kind::Result, "ListItem_LogStoreEmptied",
     Icon::Pass},
    {command::LogStoreReport, kAnyOther, Kind::Question, "ListItem_LogStoreNearlyFull",
     Icon::Warning},
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
      faults_(new DialogForm(window, 0, DialogRank::Fault)),
      strip_(new NoticeStrip(window, kStripSeconds)) {
    popup_->setObjectName(QStringLiteral("popupForm"));
    popup_->checkWindowChange(true);
    logFull_->setObjectName(QStringLiteral("logFullDialog"));
    logFull_->setButtonType(DialogForm::OkCancelButtons);
    logFull_->setDanger(true);
    notice_->setObjectName(QStringLiteral("noticeDialog"));
    notice_->setPassing(true);
    // A dialog of their own, since they outlast what is shown on the other.
    faults_->setObjectName(QStringLiteral("faultDialog"));
    faults_->setIcon(Icon::Error);
    strip_->setObjectName(QStringLiteral("noticeStrip"));

    connect(logFull_, &DialogForm::touchOk, this, &ReportPopups::deleteLogsWanted);
    connect(logFull_, &DialogForm::closePopup, this, &ReportPopups::keepLogsWanted);
}

void ReportPopups::windowChanged() {
    popup_->windowChanged();
}

void ReportPopups::windowRaised(int noticeTop) {
    strip_->setTop(noticeTop);
}

void ReportPopups::show(int command, int p1) {
    const Report* report = find(command, p1);
    if (report == nullptr)
        return;
    // Nothing is left to be deleted.
    if (command == command::LogStoreReport && p1 == command::log_store::Emptied)
        logFull_->hide();
    // First, for the change takes the popup of the old screen away.
    if (!report->screen.isNull())
        emit screenWanted(report->screen);
    switch (report->kind) {
        case Kind::Result:
            present(popup_, QLatin1String(report->key), report->icon);
            break;
        case Kind::Question:
            present(logFull_, QLatin1String(report->key), report->icon);
            break;
    }
}

void ReportPopups::showAccess(bool accepted) {
    const QString key =
        accepted ? QStringLiteral("Info_AccessEvent") : QStringLiteral("Info_AccessRefusedEvent");
    ScriptHandler::Script text = scripts_(key);
    text.script += QStringLiteral("  ") +
                   Clock::now().toString(scripts_(QStringLiteral("Arg_EventTime")).script);
    strip_->tell(accepted ? NoticeStrip::Kind::Done : NoticeStrip::Kind::Refused, key, text);
}

void ReportPopups::showNotice(const QString& key) {
    present(notice_, key, Icon::Info);
}

void ReportPopups::present(DialogForm* dialog, const QString& key, DialogForm::Icon icon) {
    // The same again leaves what a finger may be about to touch as it is.
    if (!dialog->isOpen() || dialog->textKey() != key) {
        dialog->hide();
        dialog->setIcon(icon);
        dialog->setTextKey(key);
        dialog->show();
    }
    if (icon == Icon::Error)
        emit errorShown();
}

void ReportPopups::showFaults(const QStringList& keys) {
    if (keys.isEmpty()) {
        faults_->hide();
        return;
    }
    if (keys != faults_->textKeys())
        faults_->setTextKeys(keys);
    faults_->show();
}
