#include "screens/logs/info_log_list.h"

#include <QLocale>
#include <QScrollBar>
#include <utility>

#include "app/window_shell.h"
#include "link/command_code.h"
#include "link/device_message.h"
#include "screens/logs/log_card.h"
#include "screens/logs/log_list.h"
#include "ui/picture_shelf.h"
#include "ui/theme.h"

namespace {

/// Milliseconds without a frame of a page after which no more is expected.
constexpr int kAnswerTime = 5000;
constexpr int kPopupSeconds = 3;
/// Bytes of the small pictures: those of 200 rows.
constexpr int kThumbs = 4 * 1024 * 1024;

enum Popup { kWait, kIncomplete, kNoController };
constexpr ScreenText kTexts[] = {
    {kWait, "ListItem_WaitASecond", ScreenText::Wait},
    {kIncomplete, "ListItem_LogsIncomplete", ScreenText::Error},
    {kNoController, "ListItem_NoController", ScreenText::Error},
};

}  // namespace

Info_logList::Info_logList(QWidget* parent, const QString& title)
    : FormScreen(parent, title),
      popup_(this, kTexts),
      logs_(new LogModel(this)),
      thumbs_(new PictureShelf({InfoLogItem::kPhoto, InfoLogItem::kPhoto}, kThumbs, this)) {
    // A list that is still empty waits for a touch.
    logs_->setSource(
        [this] {
            return logs_->size() > 0 && pages_.hasNext() && !isLoading() && !popup_.isOpen();
        },
        [this] { nextPage(); });
    connect(&request_, &DeviceRequest::failed, this, &Info_logList::pageFailed);
}

void Info_logList::built() {
    painter_ = new InfoLogItem(
        thumbs_, [](const char* key) { return shell()->getScript(QLatin1String(key)); }, this);
    ui_->list->setRowPainter(painter_);
    ui_->list->setModel(logs_);
    connect(ui_->list, &RowList::rowTouched, this,
            [this](const QModelIndex& row) { showThumbNail(row.row()); });
    connect(ui_->list->verticalScrollBar(), &QScrollBar::valueChanged, this, [this] {
        if (isLoading() && isAtEnd())
            popup_.wait(kWait);
    });
    connect(thumbs_, &PictureShelf::arrived, ui_->list->viewport(),
            QOverload<>::of(&QWidget::update));
    connect(ui_->firstButton, &WidgetButton::touched, this, &Info_logList::jumpFirst);
    connect(ui_->lastButton, &WidgetButton::touched, this, &Info_logList::jumpLast);
    for (TextLine* caption : {ui_->dateCaption, ui_->userCaption, ui_->keyCaption})
        caption->setInk(Theme::kHint);
    ui_->rangeLine->setInk(Theme::kCaption);
    const auto fill = [](QWidget* widget, QRgb color) {
        QPalette ground = widget->palette();
        ground.setColor(QPalette::Window, Theme::color(color));
        widget->setPalette(ground);
    };
    fill(ui_->bottomBar, Theme::kBar);
    fill(ui_->bottomLine, Theme::kLine);
}

void Info_logList::scriptsApplied() {
    FormScreen::scriptsApplied();
    // The frame around this column's caption is one for any text.
    ScriptHandler::Script caption = shell()->getScript(QStringLiteral("Arg_logListInfoUID"));
    caption.script =
        caption.script.arg(shell()->getScript(QStringLiteral("Info_CustomerID")).script);
    // The last glyph may reach beyond its advance, and out of a line that ends with it.
    caption.script += QLatin1Char(' ');
    ui_->userCaption->setScript(caption);
    showRange();
}

// --- Coming and going ----------------------------------------------------------------------

void Info_logList::windowInEvent() {
    FormScreen::windowInEvent();
    hideThumbNail();
    popup_.wait(kWait);
    _gui_menu_ settings{};
    shell()->GetGuiMenu(&settings);
    picturesShown_ = settings.screen.showThumbnail != 0;
    painter_->setPicturesShown(picturesShown_);
    shell()->GetUserLog(&query_);
    logs_->setItemList({});
    ui_->list->rewind();
    toEnd_ = false;
    setTotal(param().toUInt());
    // What an earlier list was still owed is no part of this one.
    page_.wanted = page_.arrived;
    if (!begin(LogPages::first()))
        popup_.show(kNoController, kPopupSeconds);
}

void Info_logList::windowOutEvent() {
    FormScreen::windowOutEvent();
    hideThumbNail();
    popup_.endWait();
    logs_->setItemList({});
    thumbs_->clear();
}

void Info_logList::saveButtonTouch() {
    // What was searched for is still there.
    shell()->changeWindow(backTarget(), true);
}

void Info_logList::prevButtonTouch() {
    saveButtonTouch();
}

void Info_logList::setTotal(quint32 total) {
    pages_.setTotal(total);
    showRange();
}

// --- Pages ---------------------------------------------------------------------------------

bool Info_logList::begin(const LogPages::Request& request) {
    before_ = page_;
    page_ = {nextLogTag(before_.tag), pages_.expected(request), 0};
    return ask(request);
}

bool Info_logList::ask(const LogPages::Request& request) {
    query_.count = request.count;
    query_.start = request.start;
    query_.tag = page_.tag;
    if (!request_.sendRecord(command::AskLogPage, query_.kind, 0, query_, {}, kAnswerTime))
        return false;
    if (page_.wanted == 0)
        endPage();
    return true;
}

void Info_logList::deviceAnswer(const DeviceMessage& message) {
    if (message.command == command::LogPage)
        ShowUserLogList(message.p1, message.p2, message);
    else
        FormScreen::deviceAnswer(message);
}

Info_logList::Page* Info_logList::pageOf(int tag) {
    if (tag == page_.tag || (tag == 0 && isLoading()))
        return &page_;
    return tag != 0 && tag == before_.tag ? &before_ : nullptr;
}

void Info_logList::ShowUserLogList(int, int p2, const DeviceMessage& frame) {
    Page* page = pageOf(p2);
    if (page == nullptr)
        return;
    std::vector<GUI_LOGDATA> logs = frame.records<GUI_LOGDATA>();
    if (logs.size() > page->wanted - page->arrived)
        logs.resize(page->wanted - page->arrived);
    page->arrived += static_cast<quint32>(logs.size());
    logs_->addItemList(logs);
    showRange();
    if (!isLoading())
        return;
    // One that comes late shows that the controller is at work. A frame without a log ends the
    // page: there are fewer of them by now.
    if (page == &before_ || (page->arrived < page->wanted && !logs.empty()))
        request_.extend();
    else
        endPage();
}

void Info_logList::endPage() {
    request_.cancel();
    popup_.endWait();
    if (std::exchange(toEnd_, false))
        scrollToEnd();
}

void Info_logList::pageFailed(DeviceRequest::Failure why) {
    toEnd_ = false;
    popup_.show(why == DeviceRequest::Failure::LinkDown ? kNoController : kIncomplete,
                kPopupSeconds, QStringLiteral("%1 / %2").arg(page_.arrived).arg(page_.wanted));
}

void Info_logList::nextPage() {
    // One that has not come at all is asked for again.
    const bool begins = logs_->size() == 0 && pages_.total() > 0;
    if (isLoading() || (!begins && !pages_.hasNext()))
        return;
    // Nothing is to be lost without the link: the page can be asked for later.
    if (!shell()->linkUp()) {
        popup_.show(kNoController, kPopupSeconds);
        return;
    }
    // Whoever has not come to the end yet does not wait.
    if (isAtEnd() || toEnd_)
        popup_.wait(kWait);
    if (begins)
        pages_.setTotal(pages_.total());
    if (!(begins ? ask(LogPages::first()) : begin(*pages_.next())))
        popup_.show(kNoController, kPopupSeconds);
}

void Info_logList::jumpFirst() {
    if (!isLoading())
        ui_->list->rewind();
}

void Info_logList::jumpLast() {
    if (isLoading())
        return;
    toEnd_ = true;
    nextPage();
    toEnd_ = isLoading();
    scrollToEnd();
}

bool Info_logList::isAtEnd() const {
    const QScrollBar* bar = ui_->list->verticalScrollBar();
    return bar->value() == bar->maximum();
}

void Info_logList::scrollToEnd() {
    if (logs_->size() > 0)
        ui_->list->reveal(logs_->index(logs_->size() - 1));
}

void Info_logList::showRange() {
    if (!isFormBuilt())
        return;
    ScriptHandler::Script range = shell()->getScript(QStringLiteral("Arg_LogRange"));
    const QLocale locale(shell()->getScript(QStringLiteral("Arg_Locale")).script);
    const int shown = logs_->size();
    range.script = shown == 0
                       ? QString()
                       : range.script.arg(locale.toString(1), locale.toString(shown),
                                          locale.toString(qMax(pages_.total(), quint32(shown))));
    ui_->rangeLine->setScript(range);
}

// --- One log -------------------------------------------------------------------------------

void Info_logList::showThumbNail(int row) {
    hideThumbNail();
    card_ = new LogCard(this, logs_->log(row), picturesShown_,
                        [](const QString& key) { return shell()->getScript(key); });
    card_->show();
}

void Info_logList::hideThumbNail() {
    if (card_)
        card_->hide();
}
