#include "screens/logs/info_log_search.h"

#include <cstring>
#include <iterator>

#include "app/screen_titles.h"
#include "app/window_shell.h"
#include "base/clock.h"
#include "link/command_code.h"
#include "link/device_message.h"
#include "link/record_values.h"
#include "screens/logs/log_pages.h"

namespace {

constexpr int kAnswerTime = 5000;  // milliseconds
constexpr int kPopupSeconds = 3;
constexpr int kShortestId = 6;
constexpr int kLongestId = 11;
constexpr int kFirstYear = 2000;
constexpr int kLastYear = kFirstYear + 255;
constexpr int kNothingWrong = -1;

enum Popup {
    kPopupId = 0,
    kPopupNothing = 20,
    kPopupDate,
    kPopupOrder,
    kPopupNoController,
    kPopupNoAnswer,
    kWait,
};
constexpr ScreenText kTexts[] = {
    {kPopupId, "ListItem_LogIdLength", ScreenText::Error},
    {kPopupNothing, "ListItem_NoLogsFound", ScreenText::Info},
    {kPopupDate, "ListItem_CheckInputDate", ScreenText::Error},
    {kPopupOrder, "ListItem_StartDateAfterEndDate", ScreenText::Error},
    {kPopupNoController, "ListItem_NoController", ScreenText::Error},
    {kPopupNoAnswer, "Error_NoResponse", ScreenText::Error},
    {kWait, "ListItem_WaitASecond", ScreenText::Wait},
};

/// By the choices of the screen; the first one is for all.
constexpr std::uint8_t kMethods[] = {
    0,
    AuthMethod::Face + 1,
    AuthMethod::Card + 1,
    AuthMethod::FaceOrCard + 1,
    AuthMethod::FaceAndCard + 1,
    AuthMethod::FaceAndId + 1,
};

const QString kFormat = QStringLiteral("yyyy-MM-dd");

QDate dateIn(const QString& text) {
    const QDate date = QDate::fromString(text, kFormat);
    return date.year() >= kFirstYear && date.year() <= kLastYear ? date : QDate();
}

RecordDate recordDate(const QDate& date) {
    return {static_cast<std::uint16_t>(date.year()), static_cast<std::uint8_t>(date.month()),
            static_cast<std::uint8_t>(date.day())};
}

}  // namespace

Info_LogSearch::Info_LogSearch(QWidget* parent, const QString& title)
    : FormScreen(parent, title), popup_(this, kTexts) {
    connect(&request_, &DeviceRequest::answered, this, [this](const DeviceMessage& message) {
        UpdateUserLogCount(message.record<quint32>().value_or(0));
    });
    connect(&request_, &DeviceRequest::failed, this, [this](DeviceRequest::Failure why) {
        popup_.show(why == DeviceRequest::Failure::LinkDown ? kPopupNoController : kPopupNoAnswer,
                    kPopupSeconds);
    });
}

void Info_LogSearch::built() {
    connect(ui_->topBar, &TopBar::forwardTouched, this, &Info_LogSearch::searchButtonTouch);
    connect(ui_->periodCombo, &Combo::currentIndexChanged, this, &Info_LogSearch::periodChosen);
}

void Info_LogSearch::windowInEvent() {
    FormScreen::windowInEvent();
    if (!param().toBool())
        forget();
    periodChosen();
}

void Info_LogSearch::deviceAnswer(const DeviceMessage& message) {
    // A count that was given up says nothing of what is searched for by now.
    const bool late =
        message.command == command::LogCount && message.p2 != 0 && message.p2 != query_.tag;
    if (!late)
        FormScreen::deviceAnswer(message);
}

void Info_LogSearch::forget() {
    ui_->idField->clear();
    for (Combo* combo : {ui_->resultCombo, ui_->methodCombo, ui_->periodCombo})
        combo->setCurrentIndex(0);
    const QDate today = Clock::now().date();
    ui_->fromField->setText(QDate(today.year(), today.month(), 1).toString(kFormat));
    ui_->toField->setText(today.toString(kFormat));
    ui_->list->rewind();
}

void Info_LogSearch::periodChosen() {
    const bool fromTo = ui_->periodCombo->currentIndex() == LogPeriod::FromTo;
    ui_->fromRow->setVisible(fromTo);
    ui_->toRow->setVisible(fromTo);
}

// --- What is searched for ------------------------------------------------------------------

int Info_LogSearch::setUserId(const QString& text) {
    const QByteArray id = text.toLatin1();
    std::memset(query_.userId, 0, sizeof query_.userId);
    query_.kind = 0;
    if (id.size() < kShortestId || id.size() > kLongestId)
        return id.isEmpty() ? kNothingWrong : kPopupId;
    std::memcpy(query_.userId, id.constData(), static_cast<std::size_t>(id.size()));
    query_.kind = 1;
    return kNothingWrong;
}

int Info_LogSearch::setDate(const QString& from, const QString& to) {
    query_.from = query_.to = RecordDate{};
    if (query_.period != LogPeriod::FromTo)
        return kNothingWrong;
    const QDate first = dateIn(from);
    const QDate last = dateIn(to);
    if (!first.isValid() || !last.isValid())
        return kPopupDate;
    if (first > last)
        return kPopupOrder;
    query_.from = recordDate(first);
    query_.to = recordDate(last);
    return kNothingWrong;
}

void Info_LogSearch::setAuthMethod(int choice) {
    query_.authMethod = kMethods[qBound(0, choice, static_cast<int>(std::size(kMethods)) - 1)];
}

void Info_LogSearch::searchButtonTouch() {
    shell()->removeTouchKey();
    if (request_.isWaiting())
        return;
    const quint8 last = query_.tag;
    query_ = GUI_USERLOG{};
    query_.tag = nextLogTag(last);
    query_.count = LogPages::first().count;
    query_.start = LogPages::first().start;
    setPeriod(ui_->periodCombo->currentIndex());
    setViewType(ui_->resultCombo->currentIndex());
    setAuthMethod(ui_->methodCombo->currentIndex());
    int wrong = setUserId(ui_->idField->text());
    if (wrong == kNothingWrong)
        wrong = setDate(ui_->fromField->text(), ui_->toField->text());
    if (wrong != kNothingWrong) {
        popup_.show(wrong, kPopupSeconds);
        return;
    }
    if (!request_.sendRecord(command::SearchLogs, query_.kind, 0, query_, {command::LogCount},
                             kAnswerTime)) {
        popup_.show(kPopupNoController, kPopupSeconds);
        return;
    }
    popup_.wait(kWait);
}

void Info_LogSearch::UpdateUserLogCount(quint32 count) {
    if (count == 0) {
        popup_.show(kPopupNothing, kPopupSeconds);
        return;
    }
    popup_.endWait();
    shell()->SetUserLog(&query_);
    shell()->changeWindow(screen_title::kLogList, count);
}
