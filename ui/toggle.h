#pragma once

#include "ui/script_text.h"
#include "ui/widget_button.h"

/// Two words side by side, of which one holds. A touch on a word makes it hold.
///
/// Its size hint is 226x56 while the words fit that, else wider; a ListRow gives it a line of its
/// own then.
class Toggle : public WidgetButton, public Scripted {
    Q_OBJECT
    Q_PROPERTY(QString leftKey READ leftKey WRITE setLeftKey)
    Q_PROPERTY(QString rightKey READ rightKey WRITE setRightKey)
    Q_PROPERTY(int currentIndex READ currentIndex WRITE setCurrentIndex NOTIFY currentIndexChanged)

 public:
    explicit Toggle(QWidget* parent = nullptr);

    const QString& leftKey() const { return words_[0].key(); }
    void setLeftKey(const QString& key) { words_[0].setKey(key); }
    const QString& rightKey() const { return words_[1].key(); }
    void setRightKey(const QString& key) { words_[1].setKey(key); }
    /// 0 for the left word, 1 for the right one; every other value counts as 1.
    int currentIndex() const { return current_; }
    void setCurrentIndex(int index);

    void applyScripts(const Lookup& lookup) override;
    QSize sizeHint() const override;

 signals:
    void currentIndexChanged(int index);

 protected:
    void paintEvent(QPaintEvent* event) override;

 private:
    ScriptText words_[2];
    int current_ = 0;
};
