#include "ui/row_list.h"

#include <QMouseEvent>
#include <QPainter>
#include <QPointer>
#include <QScrollBar>

#include "ui/finger_scroll.h"
#include "ui/key_click.h"
#include "ui/paint.h"
#include "ui/text_fit.h"
#include "ui/theme.h"

namespace {

constexpr int kSide = 16;
constexpr int kEmptySide = 24;

}  // namespace

// --- RowPainter ----------------------------------------------------------------------------

void RowPainter::paint(QPainter* painter, const QStyleOptionViewItem& option,
                       const QModelIndex& index) const {
    const auto* list = static_cast<const RowList*>(option.widget);
    const RowState state{list->down_ && list->touched_ == index, list->selected_ == index,
                         index.flags().testFlag(Qt::ItemIsEnabled),
                         list->empty_.entry().fontFamily};
    const QRect box = boxIn(option.rect);
    paintGround(painter, box, state);
    paintRow(painter, box, index, state);
}

QSize RowPainter::sizeHint(const QStyleOptionViewItem& option, const QModelIndex&) const {
    return {option.rect.width(), height_ + kGap};
}

QRect RowPainter::boxIn(const QRect& area) const {
    return {area.x() + kSide, area.y(), area.width() - 2 * kSide, height_};
}

void RowPainter::paintGround(QPainter* painter, const QRect& box, const RowState& state) const {
    Paint::row(painter, box, Theme::kRadiusControl, state.pressed, state.selected && state.enabled);
}

// --- RowList -------------------------------------------------------------------------------

RowList::RowList(QWidget* parent) : QListView(parent), finger_(new FingerScroll(this)) {
    setObjectName(QStringLiteral("RowList"));
    setUniformItemSizes(true);
    setVerticalScrollMode(ScrollPerPixel);
    setSelectionMode(NoSelection);
    setEditTriggers(NoEditTriggers);
    QPalette ground = palette();
    ground.setColor(QPalette::Base, Theme::color(Theme::kBackground));
    setPalette(ground);
    connect(finger_, &FingerScroll::touchTaken, this, [this] { press({}); });
}

void RowList::setModel(QAbstractItemModel* model) {
    QListView::setModel(model);
    selected_ = QModelIndex();
    press({});
}

void RowList::setRowPainter(RowPainter* painter) {
    painter_ = painter;
    setItemDelegate(painter);
}

void RowList::setEmptyKey(const QString& key) {
    empty_.setKey(key);
}

void RowList::select(const QModelIndex& index) {
    const QModelIndex before = selected_;
    selected_ = index;
    update(before);
    update(index);
}

QRect RowList::rowBox(const QModelIndex& index) const {
    return painter_->boxIn(visualRect(index));
}

void RowList::reveal(const QModelIndex& index) {
    finger_->stop();
    scrollTo(index);
}

void RowList::rewind() {
    finger_->stop();
    verticalScrollBar()->setValue(0);
}

void RowList::applyScripts(const Lookup& lookup) {
    empty_.apply(lookup);
    viewport()->update();
}

QModelIndex RowList::touchedRow(const QPoint& at) const {
    const QModelIndex index = indexAt(at);
    const bool takes =
        index.isValid() && index.flags().testFlag(Qt::ItemIsEnabled) && rowBox(index).contains(at);
    return takes ? index : QModelIndex();
}

void RowList::press(const QModelIndex& index) {
    const QModelIndex before = touched_;
    touched_ = index;
    down_ = index.isValid();
    update(before);
    update(index);
}

void RowList::mousePressEvent(QMouseEvent* event) {
    if (event->button() != Qt::LeftButton || busy_)
        return;
    press(touchedRow(event->pos()));
    if (down_)
        KeyClick::send();
}

void RowList::mouseMoveEvent(QMouseEvent* event) {
    const bool down = touched_.isValid() && touchedRow(event->pos()) == touched_;
    if (down == down_)
        return;
    down_ = down;
    update(touched_);
}

void RowList::mouseReleaseEvent(QMouseEvent* event) {
    const QModelIndex index = touched_;
    const bool counts = index.isValid() && touchedRow(event->pos()) == index;
    press({});
    if (!counts)
        return;
    // A press that comes in meanwhile, or together with this one, must not start it twice.
    busy_ = true;
    const QPointer<RowList> self(this);
    emit rowTouched(index);
    if (self)
        QMetaObject::invokeMethod(
            this, [this] { busy_ = false; }, Qt::QueuedConnection);
}

void RowList::hideEvent(QHideEvent* event) {
    press({});
    QListView::hideEvent(event);
}

void RowList::paintEvent(QPaintEvent* event) {
    // Not one frame without the rows that have just come.
    executeDelayedItemsLayout();
    QListView::paintEvent(event);
    const QAbstractItemModel* rows = model();
    if (rows == nullptr || rows->rowCount() > 0 || rows->canFetchMore({}) || empty_.isEmpty())
        return;
    QPainter painter(viewport());
    TextFit::draw(&painter, viewport()->rect().adjusted(kEmptySide, 0, -kEmptySide, 0),
                  Qt::AlignHCenter, empty_.entry(), TextFit::kRowLabel, QFont::Normal,
                  Theme::kHint);
}

void RowList::verticalScrollbarValueChanged(int value) {
    QListView::verticalScrollbarValueChanged(value);
    fetchAhead();
}

/// Before the end is seen, so that whoever scrolls does not bounce off it.
void RowList::fetchAhead() {
    QAbstractItemModel* rows = model();
    const int below = verticalScrollBar()->maximum() - verticalScrollBar()->value();
    if (rows != nullptr && below < viewport()->height() && rows->canFetchMore({}))
        rows->fetchMore({});
}
