#pragma once

#include <QBasicTimer>
#include <QWidget>

/// Turns while something is waited for, and only while it is visible. 72x72.
class Spinner : public QWidget {
    Q_OBJECT

 public:
    explicit Spinner(QWidget* parent = nullptr);

    QSize sizeHint() const override;

 protected:
    void showEvent(QShowEvent* event) override;
    void hideEvent(QHideEvent* event) override;
    void timerEvent(QTimerEvent* event) override;
    void paintEvent(QPaintEvent* event) override;

 private:
    QBasicTimer timer_;
    int frame_ = 0;
};
