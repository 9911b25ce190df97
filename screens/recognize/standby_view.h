#pragma once

#include <QDateTime>
#include <QLocale>
#include <QPixmap>

#include "ui/scripted.h"
#include "ui/widget_button.h"

/// The picture of the standby screen: large clock, date and the hint how to go on. Paints only what
/// a new time changes. All of it is one button, without a key click: being woken has its own sound.
class StandbyView : public WidgetButton, public Scripted {
    Q_OBJECT

 public:
    explicit StandbyView(QWidget* parent = nullptr);

    /// Shows @p now to the minute.
    void setTime(const QDateTime& now);
    /// Shows a chosen picture behind the clock, dimmed so that the clock can be read; a null one
    /// brings the own background back.
    void setBackground(const QPixmap& picture);
    /// Shows @p logo at the top left, scaled down to 240 by 72 if it is larger.
    void setLogo(const QPixmap& logo);

    /// Shows nothing at all, to spare the panel. It can be touched all the same.
    void setDark(bool dark);
    bool isDark() const { return dark_; }

    void applyScripts(const Lookup& lookup) override;

 protected:
    void paintEvent(QPaintEvent* event) override;
    void downChanged() override;

 private:
    void paintOwnBackground(QPainter& painter, const QRect& area) const;
    void paintClock(QPainter& painter) const;
    void paintHint(QPainter& painter) const;
    QString dateText() const;

    QDateTime time_;
    QPixmap background_;
    QPixmap logo_;
    ScriptHandler::Script hint_;
    ScriptHandler::Script date_;
    QLocale locale_;
    bool dark_ = false;
};
