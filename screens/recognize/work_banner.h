#pragma once

#include "ui/script_handler.h"
#include "ui/widget_button.h"

/// The banner over the live view: what the terminal is recording now, and when.
class WorkBanner : public WidgetButton {
    Q_OBJECT

 public:
    explicit WorkBanner(QWidget* parent = nullptr);

    /// Paints the ground as the style sheet @p sheet says.
    void setGround(const QString& sheet);
    const QString& ground() const { return ground_; }
    /// @p icon is a picture of 40 pixels, empty where the ground brings one along. Without a
    /// @p range the mode has the banner to itself.
    void setContent(const QString& icon, const ScriptHandler::Script& mode,
                    const ScriptHandler::Script& range);
    const QString& modeText() const { return mode_.script; }
    const QString& rangeText() const { return range_.script; }
    /// Whether a touch leads to more, and shows that it does.
    void setTouchable(bool touchable);

 protected:
    void paintEvent(QPaintEvent* event) override;
    bool isTouchable() const override { return touchable_; }

 private:
    QString ground_;
    QString icon_;
    ScriptHandler::Script mode_;
    ScriptHandler::Script range_;
    bool touchable_ = false;
};
