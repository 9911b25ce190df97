#pragma once

#include <QBasicTimer>
#include <QStringList>
#include <QWidget>

/// Plays pictures of Pictures::icon() one after the other, once or again and again. Costs nothing
/// between frames, when it has come to its last one, or while it is hidden; holds no picture
/// itself.
class AnimationPlayWidget : public QWidget {
    Q_OBJECT

 public:
    using QWidget::QWidget;

    /// Shows the first picture and plays from there, each for @p interval milliseconds. One
    /// picture alone just stands there.
    void play(const QStringList& pictures, int interval, bool loop);

 protected:
    void paintEvent(QPaintEvent* event) override;
    void timerEvent(QTimerEvent* event) override;
    void hideEvent(QHideEvent* event) override;
    void showEvent(QShowEvent* event) override;

 private:
    void run();

    QStringList frames_;
    QBasicTimer timer_;
    int interval_ = 0;
    int frame_ = 0;
    bool loop_ = false;
};
