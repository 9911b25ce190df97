#pragma once

#include <QWidget>

#include "ui/scripted.h"

/// How far a chain of steps has come: a tick for each step done, a mark on the present one. 480x72.
class StepBar : public QWidget, public Scripted {
    Q_OBJECT
    Q_PROPERTY(int stepCount READ stepCount WRITE setStepCount)
    Q_PROPERTY(int currentStep READ currentStep WRITE setCurrentStep)

 public:
    explicit StepBar(QWidget* parent = nullptr);

    int stepCount() const { return count_; }
    void setStepCount(int count);
    /// Counts from 1.
    int currentStep() const { return current_; }
    void setCurrentStep(int step);

    void applyScripts(const Lookup& lookup) override;
    QSize sizeHint() const override;

 protected:
    void paintEvent(QPaintEvent* event) override;

 private:
    QString family_;
    int count_ = 5;
    int current_ = 1;
};
