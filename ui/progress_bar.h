#pragma once

#include <QWidget>

/// How much of a task is done.
class ProgressBar : public QWidget {
    Q_OBJECT
    Q_PROPERTY(int value READ value WRITE setValue)
    Q_PROPERTY(bool inDialog READ isInDialog WRITE setInDialog)

 public:
    explicit ProgressBar(QWidget* parent = nullptr);

    /// In percent; a value outside 0 to 100 becomes the nearest inside.
    int value() const { return value_; }
    void setValue(int percent);
    /// Draws its track dark enough for the ground of a dialog.
    bool isInDialog() const { return inDialog_; }
    void setInDialog(bool inDialog);

    QSize sizeHint() const override;

 protected:
    void paintEvent(QPaintEvent* event) override;

 private:
    int value_ = 0;
    bool inDialog_ = false;
};
