#pragma once

#include <QTimer>

class QWidget;

/// A timer of something that is seen: it runs only while its widget is visible. Hiding the widget
/// stops it, and it does not start behind another screen. GUI thread only.
class VisibleTimer : public QTimer {
    Q_OBJECT

 public:
    /// A timer of @p widget, which owns it as a member or otherwise outlives it.
    explicit VisibleTimer(QWidget* widget);

    /// As QTimer's own, unless the widget is hidden: then nothing is started, and what ran is over.
    void start();
    void start(int milliseconds);

 protected:
    bool eventFilter(QObject* watched, QEvent* event) override;

 private:
    const QWidget* const widget_;
};
