#pragma once

#include <QWidget>

#include "link/device_records.h"
#include "ui/scripted.h"
#include "ui/visible_timer.h"

/// The box around the face on the live picture: corners while the face is tracked, a closed frame
/// with a mark once it is recognised or not, and then the reason below it. Lies over the picture
/// and repaints only what a new box changes.
class TrackingBoxForm : public QWidget, public Scripted {
    Q_OBJECT

 public:
    explicit TrackingBoxForm(QWidget* parent = nullptr);

    /// Where the marks and the reason may be shown; the rest belongs to banner and buttons.
    void setVisiblePart(const QRect& part);
    void setFace(const TrackedFace& face);
    /// Says for a moment that a card was refused, @p reason as in TrackedFace.
    void showCardFailure(int reason);
    void clear();

    void applyScripts(const Lookup& lookup) override;

 protected:
    void paintEvent(QPaintEvent* event) override;

 private:
    enum State { NoFace, Tracking, Recognised, Failed };

    /// What is painted.
    struct Look {
        State state = NoFace;
        QRect box;
        const ScriptHandler::Script* reason = nullptr;  // one of the members below
        QRect pill;                                     // where the reason stands

        bool operator==(const Look& other) const {
            return state == other.state && box == other.box && reason == other.reason &&
                   pill == other.pill;
        }
    };

    /// Shows the face, and what a card's failure has to say besides.
    void refresh();
    void giveReason(Look& look, const ScriptHandler::Script& reason, const QRect& above) const;
    QRegion region(const Look& look) const;
    QRect badge(const Look& look) const;
    void paintFrame(QPainter& painter) const;
    void paintBadge(QPainter& painter) const;
    void paintPill(QPainter& painter) const;

    Look face_;
    Look look_;
    QRect visiblePart_;
    VisibleTimer cardTimer_{this};
    const ScriptHandler::Script* cardReason_ = nullptr;
    ScriptHandler::Script faceNotRegistered_;
    ScriptHandler::Script cardNotRegistered_;
    ScriptHandler::Script notPermitted_;
};
