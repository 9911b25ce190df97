#pragma once

#include <QPointer>
#include <QStringList>

#include "ui/script_text.h"
#include "ui/widget_button.h"

class PickList;

/// A field that shows one of several choices; a touch opens them as a PickList.
class Combo : public WidgetButton, public Scripted {
    Q_OBJECT
    Q_PROPERTY(QString titleKey READ titleKey WRITE setTitleKey)
    Q_PROPERTY(QStringList itemKeys READ itemKeys WRITE setItemKeys)
    Q_PROPERTY(int currentIndex READ currentIndex WRITE setCurrentIndex NOTIFY currentIndexChanged)

 public:
    explicit Combo(QWidget* parent = nullptr);

    /// The head of the list of choices.
    const QString& titleKey() const { return title_.key(); }
    void setTitleKey(const QString& key) { title_.setKey(key); }
    QStringList itemKeys() const;
    /// The choices by script key. The first one is chosen.
    void setItemKeys(const QStringList& keys);
    /// The choices as texts, for names that come from elsewhere. The first one is chosen.
    void setItems(const QStringList& texts);
    int count() const { return items_.size(); }
    /// The number of the choice; -1 when there are none.
    int currentIndex() const { return current_; }
    /// A number that is not one of a choice is ignored.
    void setCurrentIndex(int index);
    QString currentText() const;

    void applyScripts(const Lookup& lookup) override;
    QSize sizeHint() const override;

 signals:
    void currentIndexChanged(int index);

 protected:
    void paintEvent(QPaintEvent* event) override;

 private:
    void openList();

    ScriptText title_;
    QVector<ScriptText> items_;
    int current_ = -1;
    QPointer<PickList> list_;
};
