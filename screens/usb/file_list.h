#pragma once

#include <QAbstractListModel>
#include <QStringList>

#include "ui/row_list.h"

/// The entries of a folder: its folders, then its files, each sorted by name.
class FileModel : public QAbstractListModel {
    Q_OBJECT

 public:
    enum Role { IsFolder = Qt::UserRole };

    using QAbstractListModel::QAbstractListModel;

    void setEntries(const QStringList& folders, const QStringList& files);

    int rowCount(const QModelIndex& parent = {}) const override;
    /// The name as it is (Qt::DisplayRole), and whether it is a folder's (IsFolder).
    QVariant data(const QModelIndex& index, int role) const override;

 private:
    QStringList names_;
    int folders_ = 0;  // the first ones
};

/// A folder leads into itself, a file can be the chosen one. The name comes from outside and is
/// shown as visible() gives it, on one line.
class FilePainter : public RowPainter {
    Q_OBJECT

 public:
    using RowPainter::RowPainter;

    /// @p name with a sign in place of every character without a shape of its own.
    static QString visible(const QString& name);

 protected:
    void paintGround(QPainter* painter, const QRect& box, const RowState& state) const override;
    void paintRow(QPainter* painter, const QRect& box, const QModelIndex& index,
                  const RowState& state) const override;
};
