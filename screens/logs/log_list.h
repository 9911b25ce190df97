#pragma once

#include <QAbstractListModel>
#include <functional>
#include <vector>

#include "link/device_records.h"
#include "ui/row_list.h"

class PictureShelf;

/// One log as it is shown.
struct LogItem {
    QString time;  ///< two lines, with a blank at the end
    QString userId;
    QString name;
    const char* directionKey;
    const char* directionIcon;
    const char* methodKey;
    bool accepted;
    QString thumbPath;  ///< file name in the folder of pictures; empty for none
};

/// @p log in the words of the list.
LogItem logItem(const GUI_LOGDATA& log);
/// The script key of what was recorded: coming, leaving, a meal.
const char* logEventKey(const GUI_LOGDATA& log);

/// The logs that have arrived. More are fetched by whoever can; they are appended as they come.
class LogModel : public QAbstractListModel {
    Q_OBJECT

 public:
    using QAbstractListModel::QAbstractListModel;

    /// @p canFetch tells whether there are more, @p fetch asks for them.
    void setSource(const std::function<bool()>& canFetch, const std::function<void()>& fetch);
    void setItemList(const std::vector<GUI_LOGDATA>& logs);
    void addItemList(const std::vector<GUI_LOGDATA>& logs);
    const GUI_LOGDATA& log(int row) const { return logs_[static_cast<std::size_t>(row)]; }
    int size() const { return static_cast<int>(logs_.size()); }

    int rowCount(const QModelIndex& parent = {}) const override;
    /// The time, which tells a log from others (Qt::DisplayRole).
    QVariant data(const QModelIndex& index, int role) const override;
    bool canFetchMore(const QModelIndex& parent) const override;
    void fetchMore(const QModelIndex& parent) override;

 private:
    std::vector<GUI_LOGDATA> logs_;
    std::function<bool()> canFetch_;
    std::function<void()> fetch_;
};

/// A row of the list of logs: picture, time, who, and what was recorded how.
class InfoLogItem : public RowPainter {
    Q_OBJECT

 public:
    static constexpr int kHeight = 88;
    static constexpr int kPhoto = 68;

    using Text = std::function<ScriptHandler::Script(const char* key)>;

    /// Pictures come from @p thumbs; @p text gives the texts of script keys.
    InfoLogItem(PictureShelf* thumbs, Text text, QObject* parent);

    /// Whether people's pictures are shown.
    void setPicturesShown(bool shown) { picturesShown_ = shown; }
    /// Where the columns of the list are on a row of the screen, at their captions' height.
    static QRect timeColumn(const QRect& box);
    static QRect userColumn(const QRect& box);
    static QRect eventColumn(const QRect& box);

 protected:
    void paintRow(QPainter* painter, const QRect& box, const QModelIndex& index,
                  const RowState& state) const override;

 private:
    void setThumbPath(QPainter* painter, const QRect& box, const QString& thumbPath) const;

    PictureShelf* const thumbs_;
    const Text text_;
    bool picturesShown_ = true;
};
