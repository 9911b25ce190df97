#pragma once

#include <QVector>

#include "ui/script_text.h"
#include "ui/text_fit.h"
#include "ui/widget_button.h"

/// A control that holds one of several texts: what Combo and Toggle have in common.
class Choice : public WidgetButton, public Scripted {
    Q_OBJECT
    Q_PROPERTY(int currentIndex READ currentIndex WRITE setCurrentIndex NOTIFY currentIndexChanged)

 public:
    int count() const { return items_.size(); }
    /// The number of the text that holds; -1 when there are none.
    int currentIndex() const { return current_; }
    /// A number that is not one of a text is ignored.
    virtual void setCurrentIndex(int index);

    void applyScripts(const Lookup& lookup) override;

 signals:
    void currentIndexChanged(int index);

 protected:
    using WidgetButton::WidgetButton;

    const QVector<ScriptText>& items() const { return items_; }
    /// Replaces the texts; the first one holds.
    void setTexts(const QVector<ScriptText>& items);
    void setKey(int item, const QString& key) { items_[item].setKey(key); }
    /// The width of the widest text, in pixels.
    int widestText(const TextFit::Rule& rule, QFont::Weight weight) const;

 private:
    QVector<ScriptText> items_;
    int current_ = -1;
};
