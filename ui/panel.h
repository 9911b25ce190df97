#pragma once

#include <QWidget>

/// The card that parts of a screen stand on.
class Panel : public QWidget {
    Q_OBJECT

 public:
    using QWidget::QWidget;

 protected:
    void paintEvent(QPaintEvent* event) override;
};
