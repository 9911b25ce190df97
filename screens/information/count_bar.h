#pragma once

#include <QWidget>

#include "ui/script_text.h"

/// How many of the users that the terminal can hold are of one kind: a number and a bar.
class CountBar : public QWidget, public Scripted {
    Q_OBJECT
    Q_PROPERTY(QString textKey READ textKey WRITE setTextKey)

 public:
    explicit CountBar(QWidget* parent = nullptr);

    const QString& textKey() const { return text_.key(); }
    void setTextKey(const QString& key) { text_.setKey(key); }
    /// @p text is the number as it is written; the bar shows @p count of @p most.
    void setCount(quint32 count, quint32 most, const QString& text);
    const QString& countText() const { return count_; }

    void applyScripts(const Lookup& lookup) override;

 protected:
    void paintEvent(QPaintEvent* event) override;

 private:
    ScriptText text_;
    QString count_;
    qreal share_ = 0;
};
