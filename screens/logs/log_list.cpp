#include "screens/logs/log_list.h"

#include <QPainter>
#include <QPainterPath>
#include <utility>

#include "base/device_folders.h"
#include "link/device_message.h"
#include "link/record_values.h"
#include "ui/paint.h"
#include "ui/picture_shelf.h"
#include "ui/pictures.h"
#include "ui/text_fit.h"
#include "ui/theme.h"

namespace {

constexpr int kPhotoLeft = 10;
constexpr int kTimeLeft = 88;
constexpr int kTimeWidth = 108;
constexpr int kUserRight = 330;
constexpr int kUserWidth = 138;
constexpr int kEventLeft = 344;
constexpr int kIcon = 24;
constexpr int kIconGap = 6;
constexpr int kLine = 30;
constexpr int kWideTop = 2;  // where the direction stands above two lines

constexpr TextFit::Rule kTime{{{20, 2}}};
constexpr TextFit::Rule kUser{{{20, 1}, {18, 1}}, true};
constexpr TextFit::Rule kName{{{18, 1}}, true};
constexpr TextFit::Rule kEvent{{{20, 1}, {18, 1}}};

struct Direction {
    const char* key;
    const char* icon;
};

/// Which way somebody went.
Direction directionOf(const GUI_LOGDATA& log) {
    switch (static_cast<WorkMode>(log.inOut)) {
        case WorkMode::In:
        case WorkMode::Return:
            return {"ListItem_In", "in_24.png"};
        case WorkMode::Out:
        case WorkMode::Break:
            return {"ListItem_Out", "out_24.png"};
        case WorkMode::Breakfast:
        case WorkMode::Lunch:
        case WorkMode::Dinner:
        case WorkMode::Supper:
            return {"ListItem_InOutLOgCaseOne", "in_24.png"};
        default:
            return {"ListItem_InOut", "inout_24.png"};
    }
}

const char* methodKeyOf(const GUI_LOGDATA& log) {
    switch (log.authMethod) {
        case AuthMethod::Card:
            return "ListItem_Card";
        case AuthMethod::FaceOrCard:
            return "ListItem_AuthFaceOrCard";
        case AuthMethod::FaceAndCard:
            return "ListItem_AuthFaceAndCard";
        case AuthMethod::FaceAndId:
            return "ListItem_AuthFaceAndID";
        default:
            return "ListItem_Face";
    }
}

}  // namespace

LogItem logItem(const GUI_LOGDATA& log) {
    const Direction direction = directionOf(log);
    const QString visible = fieldText(log.visiblePicture);
    return {QString::asprintf("%04d.%02d.%02d<br>%02d:%02d:%02d ", 2000 + log.year, log.month,
                              log.day, log.hour, log.minute, log.second),
            QString::asprintf("%13s", fieldText(log.userId).toUtf8().constData()),
            fieldText(log.name).simplified(),
            direction.key,
            direction.icon,
            methodKeyOf(log),
            log.eventStatus != 0,
            visible.isEmpty() ? fieldText(log.infraredPicture) : visible};
}

const char* logEventKey(const GUI_LOGDATA& log) {
    switch (static_cast<WorkMode>(log.inOut)) {
        case WorkMode::In:
            return "Info_WorkIn";
        case WorkMode::Out:
            return "Info_WorkOut";
        case WorkMode::Break:
            return "Info_WorkBreak";
        case WorkMode::Return:
            return "Info_WorkReturn";
        case WorkMode::Breakfast:
            return "ListItem_Breakfast";
        case WorkMode::Lunch:
            return "ListItem_Lunch";
        case WorkMode::Dinner:
            return "ListItem_Dinner";
        case WorkMode::Supper:
            return "ListItem_Supper";
        default:
            return "Info_ModeAccess";
    }
}

// --- LogModel ------------------------------------------------------------------------------

void LogModel::setSource(const std::function<bool()>& canFetch,
                         const std::function<void()>& fetch) {
    canFetch_ = canFetch;
    fetch_ = fetch;
}

void LogModel::setItemList(const std::vector<GUI_LOGDATA>& logs) {
    beginResetModel();
    // What thousands have taken is given back.
    logs_ = std::vector<GUI_LOGDATA>(logs);
    endResetModel();
}

void LogModel::addItemList(const std::vector<GUI_LOGDATA>& logs) {
    if (logs.empty())
        return;
    beginInsertRows({}, size(), size() + static_cast<int>(logs.size()) - 1);
    logs_.insert(logs_.end(), logs.begin(), logs.end());
    endInsertRows();
}

int LogModel::rowCount(const QModelIndex& parent) const {
    return parent.isValid() ? 0 : size();
}

QVariant LogModel::data(const QModelIndex& index, int role) const {
    return role == Qt::DisplayRole ? QVariant(logItem(log(index.row())).time) : QVariant();
}

bool LogModel::canFetchMore(const QModelIndex&) const {
    return canFetch_ && canFetch_();
}

void LogModel::fetchMore(const QModelIndex&) {
    fetch_();
}

// --- InfoLogItem ---------------------------------------------------------------------------

InfoLogItem::InfoLogItem(PictureShelf* thumbs, Text text, QObject* parent)
    : RowPainter(parent, kHeight), thumbs_(thumbs), text_(std::move(text)) {}

QRect InfoLogItem::timeColumn(const QRect& box) {
    return {box.x() + kTimeLeft, box.y(), kTimeWidth, box.height()};
}

QRect InfoLogItem::userColumn(const QRect& box) {
    return {box.x() + kUserRight - kUserWidth, box.y(), kUserWidth, box.height()};
}

QRect InfoLogItem::eventColumn(const QRect& box) {
    return {box.x() + kEventLeft, box.y(), box.width() - kEventLeft - 4, box.height()};
}

void InfoLogItem::setThumbPath(QPainter* painter, const QRect& box,
                               const QString& thumbPath) const {
    const QImage photo = picturesShown_ && !thumbPath.isEmpty()
                             ? thumbs_->picture(QLatin1String(DeviceFolders::kImages), thumbPath)
                             : QImage();
    painter->save();
    painter->setRenderHints(QPainter::Antialiasing | QPainter::SmoothPixmapTransform);
    QPainterPath frame;
    frame.addRoundedRect(box, Theme::kRadiusPhoto, Theme::kRadiusPhoto);
    painter->setClipPath(frame);
    if (photo.isNull()) {
        const QPixmap silhouette = Pictures::icon(QStringLiteral("nophoto.png"));
        painter->fillRect(box, Theme::color(Theme::kPhoto));
        const QSize whole = silhouette.size().scaled(box.size(), Qt::KeepAspectRatio);
        painter->drawPixmap(
            QRect(box.topLeft() + QPoint((box.width() - whole.width()) / 2, 0), whole), silhouette);
    } else {
        painter->drawImage(box, photo);
    }
    painter->restore();
}

void InfoLogItem::paintRow(QPainter* painter, const QRect& box, const QModelIndex& index,
                           const RowState& state) const {
    const LogItem item = logItem(static_cast<const LogModel*>(index.model())->log(index.row()));
    const auto entered = [&state](const QString& text) {
        ScriptHandler::Script entry;
        entry.fontFamily = state.family;
        entry.script = text;
        return entry;
    };
    setThumbPath(painter,
                 {box.x() + kPhotoLeft, box.y() + (box.height() - kPhoto) / 2, kPhoto, kPhoto},
                 item.thumbPath);
    TextFit::draw(painter, timeColumn(box), Qt::AlignLeft, entered(item.time), kTime, QFont::Normal,
                  Theme::kList);

    // Two lines where there are two things to be said.
    const QRect upper(0, box.y() + (box.height() - 2 * kLine) / 2, box.width(), kLine);
    const auto line = [&upper](const QRect& column, int number) {
        return QRect(column.x(), upper.y() + number * kLine, column.width(), kLine);
    };
    const QRect user = userColumn(box);
    const bool named = !item.name.isEmpty() &&
                       TextFit::width(entered(item.name), kName, QFont::Normal) <= user.width();
    TextFit::draw(painter, named ? line(user, 0) : user, Qt::AlignRight, entered(item.userId),
                  kUser, QFont::Medium, Theme::kStrong);
    if (named)
        TextFit::draw(painter, line(user, 1), Qt::AlignRight, entered(item.name), kName,
                      QFont::Normal, Theme::kList);

    const QRect event = eventColumn(box);
    const ScriptHandler::Script method = TextFit::roleSized(text_(item.methodKey));
    // A method of many words takes two smaller lines, for which the direction makes room.
    const bool wide = TextFit::width(method, TextFit::kMethod, QFont::Normal) > event.width();
    QRect direction = line(event, 0);
    QRect below = line(event, 1);
    if (wide) {
        direction.moveTop(box.y() + kWideTop);
        below.setRect(event.x(), direction.bottom() + 1, event.width(),
                      box.bottom() - direction.bottom() - kWideTop);
    }
    const QRgb ink = item.accepted ? Theme::kStrong : Theme::kDanger;
    const QRect icon(event.x(), direction.y(), kIcon, kLine);
    if (item.accepted)
        Paint::glyph(painter, icon, QLatin1String(item.directionIcon), Theme::kCaption);
    else
        Paint::glyph(painter, icon, QStringLiteral("close.png"), Theme::kDanger, kIcon);
    TextFit::draw(painter, direction.adjusted(kIcon + kIconGap, 0, 0, 0), Qt::AlignLeft,
                  TextFit::roleSized(text_(item.directionKey)), kEvent, QFont::Medium, ink);
    TextFit::draw(painter, below, Qt::AlignLeft, method, TextFit::kMethod, QFont::Normal,
                  Theme::kList);
}
