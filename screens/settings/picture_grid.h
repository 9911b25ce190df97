#pragma once

#include <QAbstractListModel>

#include "screens/standby_pictures.h"
#include "ui/row_list.h"

class PictureShelf;

/// The pictures that the standby screen may show.
class PictureModel : public QAbstractListModel {
    Q_OBJECT

 public:
    using QAbstractListModel::QAbstractListModel;

    void setPictures(const QVector<StandbyPictures::Picture>& pictures);
    const StandbyPictures::Picture& picture(int row) const { return pictures_.at(row); }

    int rowCount(const QModelIndex& parent = {}) const override;
    /// The name of the file (Qt::DisplayRole).
    QVariant data(const QModelIndex& index, int role) const override;

 private:
    QVector<StandbyPictures::Picture> pictures_;
};

/// One of them in two columns: its preview, or a sign as long as that has not been read and when
/// there is none.
class PicturePainter : public RowPainter {
    Q_OBJECT

 public:
    static constexpr QSize kPreview{212, 353};

    PicturePainter(PictureShelf* previews, QObject* parent)
        : RowPainter(parent, kPreview.height()), previews_(previews) {}

    QRect boxIn(const QRect& area) const override;

 protected:
    void paintGround(QPainter* painter, const QRect& box, const RowState& state) const override;
    void paintRow(QPainter* painter, const QRect& box, const QModelIndex& index,
                  const RowState& state) const override;

 private:
    PictureShelf* const previews_;
};
