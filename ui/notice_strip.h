#pragma once

#include <QTimer>
#include <QWidget>

#include "ui/script_handler.h"

/// A popup that asks for nothing: a line across its window, which goes by itself. Touches pass
/// through it. It stands where the screen that is up leaves a place. GUI thread only.
class NoticeStrip : public QWidget {
    Q_OBJECT
    Q_PROPERTY(QString textKey READ textKey)

 public:
    static constexpr int kHeight = 24;

    enum class Kind { Done, Refused };

    /// @p seconds it stays, from each show() on.
    NoticeStrip(QWidget* window, int seconds);

    /// Moves it to the pixel line @p top.
    void setTop(int top);
    /// Shows @p text, which is what the script has under @p key with something added to it, for
    /// its whole time.
    void tell(Kind kind, const QString& key, const ScriptHandler::Script& text);
    const QString& textKey() const { return key_; }
    const QString& text() const { return text_.script; }

 protected:
    void paintEvent(QPaintEvent* event) override;

 private:
    QTimer timer_;
    Kind kind_ = Kind::Done;
    QString key_;
    ScriptHandler::Script text_;
};
