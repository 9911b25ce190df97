#pragma once

#include <QWidget>
#include <bitset>

#include "ui/script_text.h"

/// The whole screen as cells, each of which a finger has to touch; a finger may also be drawn
/// across them. When the time is over it is a small map of them, with those that were left marked.
class TouchGrid : public QWidget, public Scripted {
    Q_OBJECT

 public:
    static constexpr int kColumns = 6;
    static constexpr int kRows = 10;
    static constexpr int kCells = kColumns * kRows;

    explicit TouchGrid(QWidget* screen);

    /// All over the screen, with no cell touched.
    void begin();
    /// As the map it is when nobody touches it any more.
    void end();

    void applyScripts(const Lookup& lookup) override;

 signals:
    /// A cell has been touched for the first time; so many have been by now.
    void touched(int count);

 protected:
    void mousePressEvent(QMouseEvent* event) override;
    void mouseMoveEvent(QMouseEvent* event) override;
    void paintEvent(QPaintEvent* event) override;

 private:
    QRect cell(int number) const;
    void touch(const QPoint& at);

    std::bitset<kCells> touched_;
    bool running_ = false;
    ScriptText prompt_;
};
