#pragma once

#include <QTimer>
#include <QWidget>

#include "ui/script_handler.h"

/// A popup that asks for nothing: a line along the top edge of its window, above whatever is
/// there, which goes by itself. Touches pass through it. GUI thread only.
class NoticeStrip : public QWidget {
    Q_OBJECT

 public:
    /// @p seconds it stays, from each show() on.
    NoticeStrip(QWidget* window, int seconds);

    void setText(const ScriptHandler::Script& text);
    const QString& text() const { return text_.script; }

 protected:
    void showEvent(QShowEvent* event) override;
    void paintEvent(QPaintEvent* event) override;

 private:
    QTimer timer_;
    ScriptHandler::Script text_;
};
