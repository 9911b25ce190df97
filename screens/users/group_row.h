#pragma once

#include <QWidget>
#include <cstdint>

class LabelButton;
class ProgressBar;
class TextLine;

/// A group of users: its name, how many there are, and a button that deletes them where there may
/// be one. 448x108.
class GroupRow : public QWidget {
    Q_OBJECT
    Q_PROPERTY(QString textKey READ textKey WRITE setTextKey)
    Q_PROPERTY(bool deletable READ isDeletable WRITE setDeletable)

 public:
    explicit GroupRow(QWidget* parent = nullptr);

    QString textKey() const;
    void setTextKey(const QString& key);
    bool isDeletable() const { return deletable_; }
    void setDeletable(bool deletable);
    /// The bar tells @p count against @p most.
    void setCount(std::uint32_t count, std::uint32_t most);

    QSize sizeHint() const override { return {448, 108}; }

 signals:
    void deleteTouched();

 protected:
    void paintEvent(QPaintEvent* event) override;

 private:
    TextLine* const text_;
    TextLine* const count_;
    ProgressBar* const bar_;
    LabelButton* const delete_;
    bool deletable_ = true;
};
