#pragma once

#include <QPointer>

#include "link/device_records.h"
#include "screens/common/device_request.h"
#include "screens/common/form_screen.h"
#include "screens/common/screen_popup.h"
#include "screens/logs/log_pages.h"
#include "ui_info_log_list.h"

class InfoLogItem;
class LogCard;
class LogModel;
class PictureShelf;
struct LogItem;

/// The logs that were found: the controller is asked for them page by page as the list is scrolled,
/// by the query that the shell keeps. The number of logs found comes as the screen's parameter.
class Info_logList : public FormScreen<Ui::Info_logList> {
    Q_OBJECT

 public:
    using LogItem = ::LogItem;

    Info_logList(QWidget* parent, const QString& title);

    void windowInEvent() override;
    void windowOutEvent() override;
    void deviceAnswer(const DeviceMessage& message) override;
    /// Takes a frame of the page that is on its way, or of one that was given up; @p p2 is its tag.
    void ShowUserLogList(int p1, int p2, const DeviceMessage& frame);
    /// @p total logs were found.
    void setTotal(quint32 total);

 public slots:
    void nextPage();
    void jumpFirst();
    void jumpLast();
    /// Back to the search, which is all there is to be saved.
    void saveButtonTouch();
    /// Shows all that the log number @p row of the list says, with its pictures.
    void showThumbNail(int row);
    void hideThumbNail();

 protected:
    void built() override;
    void prevButtonTouch() override;
    void scriptsApplied() override;

 private:
    /// A page that has been asked for.
    struct Page {
        quint8 tag = 0;
        quint32 wanted = 0;   // logs
        quint32 arrived = 0;  // ... those that have come
    };

    /// Begins the page @p request, and asks for it.
    bool begin(const LogPages::Request& request);
    /// Asks for the page, which comes as several frames; false when that could not be sent.
    bool ask(const LogPages::Request& request);
    /// The page that a frame with the tag @p tag belongs to, or null.
    Page* pageOf(int tag);
    void pageFailed(DeviceRequest::Failure why);
    void endPage();
    bool isLoading() const { return request_.isWaiting(); }
    bool isAtEnd() const;
    void scrollToEnd();
    void showRange();

    DeviceRequest request_{this};
    ScreenPopup popup_;
    LogPages pages_;
    GUI_USERLOG query_{};
    Page page_;           // the one asked for last
    Page before_;         // ... before it: what is missing of it may still come
    bool toEnd_ = false;  // the person waits for the end of the list
    bool picturesShown_ = true;
    LogModel* const logs_;
    PictureShelf* const thumbs_;
    InfoLogItem* painter_ = nullptr;
    QPointer<LogCard> card_;
};
