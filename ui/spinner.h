#pragma once

#include <QBasicTimer>
#include <QWidget>

/// Turns while something is waited for, and only while it is visible. 72x72, or small enough for a
/// row.
class Spinner : public QWidget {
    Q_OBJECT
    Q_PROPERTY(bool small READ isSmall WRITE setSmall)

 public:
    explicit Spinner(QWidget* parent = nullptr);

    bool isSmall() const { return small_; }
    void setSmall(bool small) { small_ = small; }
    QSize sizeHint() const override;

 protected:
    void showEvent(QShowEvent* event) override;
    void hideEvent(QHideEvent* event) override;
    void timerEvent(QTimerEvent* event) override;
    void paintEvent(QPaintEvent* event) override;

 private:
    QBasicTimer timer_;
    int frame_ = 0;
    bool small_ = false;
};
