#pragma once

#include <QAbstractItemDelegate>
#include <QListView>
#include <QPersistentModelIndex>

#include "ui/script_text.h"

class FingerScroll;

/// How a row of a RowList is to be shown at the moment.
struct RowState {
    bool pressed;   ///< a finger is on it
    bool selected;  ///< the chosen one
    bool enabled;
    QString family;  ///< the typeface of the language in force
};

/// Paints the rows of a RowList: the ground by itself, what is on a row in a derived class.
class RowPainter : public QAbstractItemDelegate {
    Q_OBJECT

 public:
    static constexpr int kHeight = 76;
    static constexpr int kGap = 8;  // between two rows

    /// @p height of a row, in pixels.
    explicit RowPainter(QObject* parent, int height = kHeight)
        : QAbstractItemDelegate(parent), height_(height) {}

    void paint(QPainter* painter, const QStyleOptionViewItem& option,
               const QModelIndex& index) const final;
    QSize sizeHint(const QStyleOptionViewItem& option, const QModelIndex& index) const final;
    /// The row itself in @p area, which it shares with the gap below and the margins. Of a list of
    /// several columns it tells from the area which one it is in.
    virtual QRect boxIn(const QRect& area) const;

 protected:
    /// The ground in the colours of @p state; one of its own kind overrides it.
    virtual void paintGround(QPainter* painter, const QRect& box, const RowState& state) const;
    virtual void paintRow(QPainter* painter, const QRect& box, const QModelIndex& index,
                          const RowState& state) const = 0;

 private:
    const int height_;
};

/// A list of rows of one height, made from a model and painted by a RowPainter. Only the rows that
/// are seen cost anything, however many there are; a model that has more where they come from
/// (QAbstractItemModel::fetchMore()) is asked as the end comes near. The finger scrolls it as
/// FingerScroll says; a touch on a row whose item is enabled clicks and is told when the finger is
/// lifted. One row can be the selected one. GUI thread only.
class RowList : public QListView, public Scripted {
    Q_OBJECT
    Q_PROPERTY(QString emptyKey READ emptyKey WRITE setEmptyKey)

 public:
    explicit RowList(QWidget* parent = nullptr);

    void setModel(QAbstractItemModel* model) override;
    /// The list does not own it.
    void setRowPainter(RowPainter* painter);

    /// The script key of what the list says while its model has no rows and no more to fetch.
    const QString& emptyKey() const { return empty_.key(); }
    void setEmptyKey(const QString& key);

    /// The chosen row; an invalid index for none. A row that goes away is no longer the chosen one.
    QModelIndex selected() const { return selected_; }
    void select(const QModelIndex& index);

    /// The row itself on the list, in the viewport's coordinates.
    QRect rowBox(const QModelIndex& index) const;
    /// Scrolls just as far as it takes to show the row.
    void reveal(const QModelIndex& index);
    void rewind();

    void applyScripts(const Lookup& lookup) override;

 signals:
    void rowTouched(const QModelIndex& index);

 protected:
    void mousePressEvent(QMouseEvent* event) override;
    void mouseMoveEvent(QMouseEvent* event) override;
    void mouseReleaseEvent(QMouseEvent* event) override;
    void hideEvent(QHideEvent* event) override;
    void paintEvent(QPaintEvent* event) override;
    void verticalScrollbarValueChanged(int value) override;

 private:
    friend class RowPainter;

    QModelIndex touchedRow(const QPoint& at) const;
    void press(const QModelIndex& index);
    void fetchAhead();

    FingerScroll* const finger_;
    RowPainter* painter_ = nullptr;
    ScriptText empty_;
    QPersistentModelIndex selected_;
    QPersistentModelIndex touched_;  // the finger came down on it
    bool down_ = false;              // ... and is on it
    bool busy_ = false;              // what a touch does is under way
};
