#pragma once

#include <QWidget>

#include "ui/scripted.h"

class LabelButton;

/// A number between two buttons that lower and raise it; held down, they go on. At either end the
/// button that leads nowhere looks limited. A level has a bar beside its number, with one piece for
/// each step from 1 on.
class PlusMinus : public QWidget, public Scripted {
    Q_OBJECT
    Q_PROPERTY(int minimum READ minimum WRITE setMinimum)
    Q_PROPERTY(int maximum READ maximum WRITE setMaximum)
    Q_PROPERTY(int step READ step WRITE setStep)
    Q_PROPERTY(bool bar READ hasBar WRITE setBar)
    Q_PROPERTY(int value READ value WRITE setValue NOTIFY valueChanged)

 public:
    explicit PlusMinus(QWidget* parent = nullptr);

    int minimum() const { return minimum_; }
    void setMinimum(int minimum);
    int maximum() const { return maximum_; }
    void setMaximum(int maximum);
    int step() const { return step_; }
    void setStep(int step) { step_ = step; }
    bool hasBar() const { return bar_; }
    void setBar(bool bar);
    int value() const { return value_; }
    /// A value outside the range becomes the nearest one inside.
    void setValue(int value);

    void applyScripts(const Lookup& lookup) override;
    QSize sizeHint() const override;

 signals:
    void valueChanged(int value);

 protected:
    void resizeEvent(QResizeEvent* event) override;
    void paintEvent(QPaintEvent* event) override;

 private:
    void showLimits();

    LabelButton* minus_;
    LabelButton* plus_;
    QString family_;
    int minimum_ = 0;
    int maximum_ = 99;
    int step_ = 1;
    int value_ = 0;
    bool bar_ = false;
};
