#pragma once

#include <QWidget>

#include "screens/common/factory_test_form.h"

class QPainter;

/// Patterns that fill the whole screen, one after the other: a touch goes on to the next, and the
/// last one away.
class PatternView : public QWidget {
    Q_OBJECT

 public:
    /// Draws the pattern number @p pattern all over @p screen.
    using Draw = void (*)(QPainter* painter, const QRect& screen, int pattern);

    PatternView(QWidget* screen, int count, Draw draw);

    void begin();

 signals:
    /// The last one has been touched.
    void finished();

 protected:
    void mousePressEvent(QMouseEvent* event) override;
    void paintEvent(QPaintEvent* event) override;

 private:
    const int count_;
    const Draw draw_;
    int pattern_ = 0;
};

/// A factory test of one step, for which a person looks at patterns. It can be judged when all have
/// been seen.
class PatternTestForm : public FactoryTestForm {
    Q_OBJECT

 public:
    using FactoryTestForm::FactoryTestForm;

    void windowOutEvent() override;

 protected:
    /// To be called once, by built(), after setSteps().
    void setPatterns(int count, PatternView::Draw draw);
    bool asksAtOnce() const override { return false; }

 private:
    PatternView* view_ = nullptr;
};
