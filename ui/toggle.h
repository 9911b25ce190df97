#pragma once

#include "ui/choice.h"

/// Two words side by side, of which one holds. A touch on a word makes it hold.
///
/// Its size hint is 226x56 while the words fit that, else wider; a ListRow gives it a line of its
/// own then.
class Toggle : public Choice {
    Q_OBJECT
    Q_PROPERTY(QString leftKey READ leftKey WRITE setLeftKey)
    Q_PROPERTY(QString rightKey READ rightKey WRITE setRightKey)

 public:
    explicit Toggle(QWidget* parent = nullptr);

    const QString& leftKey() const { return items().at(0).key(); }
    void setLeftKey(const QString& key) { setKey(0, key); }
    const QString& rightKey() const { return items().at(1).key(); }
    void setRightKey(const QString& key) { setKey(1, key); }
    /// 0 for the left word, 1 for the right one; every other value counts as 1.
    void setCurrentIndex(int index) override;

    QSize sizeHint() const override;

 protected:
    void paintEvent(QPaintEvent* event) override;
};
