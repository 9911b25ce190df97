#pragma once

#include <QPixmap>
#include <QWidget>

#include "ui/script_text.h"

/// The camera's picture in a ring that fills as a capture goes on, with the percentage below it if
/// there is a text for it.
/// All around it is the ground of the screen. On the panel the picture lies under the window and
/// shows through; elsewhere a silhouette stands in for it. 480x656.
class EnrolRing : public QWidget, public Scripted {
    Q_OBJECT
    Q_PROPERTY(int percent READ percent WRITE setPercent)
    Q_PROPERTY(QString textKey READ textKey WRITE setTextKey)

 public:
    using QWidget::QWidget;

    int percent() const { return percent_; }
    /// 0 to 100; what is beyond counts as the end.
    void setPercent(int percent);
    /// Of the percentage, with "%1" for the number; what follows it is drawn smaller.
    const QString& textKey() const { return text_.key(); }
    void setTextKey(const QString& key) { text_.setKey(key); }

    void applyScripts(const Lookup& lookup) override;

 protected:
    void paintEvent(QPaintEvent* event) override;
    void hideEvent(QHideEvent* event) override;

 private:
    ScriptText text_;
    int percent_ = 0;
    QPixmap part_;     // of the ring, while it is seen
    int partOf_ = -1;  // percent
};
