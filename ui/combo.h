#pragma once

#include <QPointer>
#include <QStringList>

#include "ui/choice.h"

class PickList;

/// A field that shows one of several choices; a touch opens them as a PickList.
class Combo : public Choice {
    Q_OBJECT
    Q_PROPERTY(QString titleKey READ titleKey WRITE setTitleKey)
    Q_PROPERTY(QStringList itemKeys READ itemKeys WRITE setItemKeys)

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
    QString currentText() const;

    void applyScripts(const Lookup& lookup) override;
    QSize sizeHint() const override;

 protected:
    void paintEvent(QPaintEvent* event) override;

 private:
    void openList();

    ScriptText title_;
    QPointer<PickList> list_;
};
