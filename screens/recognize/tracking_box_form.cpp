#include "screens/recognize/tracking_box_form.h"

#include <QPainter>
#include <QPainterPath>

#include "link/command_parameters.h"
#include "ui/paint.h"
#include "ui/text_fit.h"
#include "ui/theme.h"

namespace {

constexpr int kCardFailureTime = 2000;  // milliseconds

// The frame: a line on a wider, darker one, so that it shows on any picture.
constexpr int kLine = 5;
constexpr int kGround = 9;
constexpr int kRadius = 20;
constexpr int kArm = 52;
/// Around the box's edge: how far the frame reaches out, and in at its corners.
constexpr int kOut = 6;
constexpr int kIn = 12;

constexpr int kBadge = 52;
constexpr int kBadgeInset = 4;  // its middle, from the box's corner

constexpr int kPillHeight = 56;
constexpr int kPillGap = 18;
constexpr int kPillSide = 22;
constexpr int kPillIcon = 28;
constexpr int kPillIconGap = 12;
constexpr int kMargin = 8;  // to the edges of what is visible
/// A card's failure stands where that of a face in the middle would.
constexpr QRect kCardReasonBelow(124, 232, 232, 296);
constexpr TextFit::Rule kPillRule{{{24, 1}, {20, 1}}};

QPainterPath corners(const QRectF& box) {
    const qreal arm = qMin<qreal>(kArm, qMin(box.width(), box.height()) / 2);
    const qreal radius = qMin<qreal>(kRadius, arm);
    QPainterPath path;
    for (const qreal right : {0, 1}) {
        for (const qreal bottom : {0, 1}) {
            const QPointF corner(box.left() + right * box.width(),
                                 box.top() + bottom * box.height());
            const qreal inX = 1 - 2 * right;
            const qreal inY = 1 - 2 * bottom;
            path.moveTo(corner.x() + inX * arm, corner.y());
            path.lineTo(corner.x() + inX * radius, corner.y());
            path.quadTo(corner, {corner.x(), corner.y() + inY * radius});
            path.lineTo(corner.x(), corner.y() + inY * arm);
        }
    }
    return path;
}

int between(int least, int value, int most) {
    return qMax(least, qMin(value, most));
}

}  // namespace

TrackingBoxForm::TrackingBoxForm(QWidget* parent) : QWidget(parent) {
    setAttribute(Qt::WA_TransparentForMouseEvents);
    cardTimer_.setSingleShot(true);
    cardTimer_.setInterval(kCardFailureTime);
    connect(&cardTimer_, &QTimer::timeout, this, &TrackingBoxForm::refresh);
}

void TrackingBoxForm::setVisiblePart(const QRect& part) {
    if (visiblePart_ == part)
        return;
    visiblePart_ = part;
    update();
}

void TrackingBoxForm::setFace(const TrackedFace& face) {
    const QRect box(face.x, face.y, face.width, face.height);
    face_ = {};
    if (face.state >= Tracking && face.state <= Failed && box.isValid() && box.intersects(rect())) {
        face_.state = static_cast<State>(face.state);
        face_.box = box;
        if (face_.state == Failed)
            giveReason(
                face_,
                face.reason == command::failure::NotPermitted ? notPermitted_ : faceNotRegistered_,
                box);
    }
    refresh();
}

void TrackingBoxForm::showCardFailure(int reason) {
    cardReason_ = reason == command::failure::NotPermitted ? &notPermitted_ : &cardNotRegistered_;
    cardTimer_.start();
    refresh();
}

void TrackingBoxForm::clear() {
    cardTimer_.stop();
    face_ = {};
    refresh();
}

void TrackingBoxForm::applyScripts(const Lookup& lookup) {
    faceNotRegistered_ = lookup(QStringLiteral("Info_FaceNotRegistered"));
    cardNotRegistered_ = lookup(QStringLiteral("Info_CardNotRegistered"));
    notPermitted_ = lookup(QStringLiteral("Info_FaceNotPermitted"));
    update();
}

void TrackingBoxForm::refresh() {
    Look look = face_;
    if (look.reason == nullptr && cardTimer_.isActive())
        giveReason(look, *cardReason_, kCardReasonBelow);
    if (look == look_)
        return;
    const QRegion before = region(look_);
    look_ = look;
    update(before | region(look_));
}

void TrackingBoxForm::giveReason(Look& look, const ScriptHandler::Script& reason,
                                 const QRect& above) const {
    const QRect part = visiblePart_.adjusted(kMargin, kMargin, -kMargin, -kMargin);
    const int text = TextFit::width(reason, kPillRule, QFont::Medium);
    const int width = qMin(part.width(), kPillSide + kPillIcon + kPillIconGap + text + kPillSide);
    const int left = above.center().x() - width / 2;
    const int top = above.bottom() + 1 + kPillGap;
    look.reason = &reason;
    look.pill = {between(part.left(), left, part.right() + 1 - width),
                 between(part.top(), top, part.bottom() + 1 - kPillHeight), width, kPillHeight};
}

QRegion TrackingBoxForm::region(const Look& look) const {
    QRegion area;
    if (look.state != NoFace) {
        area = QRegion(look.box.adjusted(-kOut, -kOut, kOut, kOut)) -
               QRegion(look.box.adjusted(kIn, kIn, -kIn, -kIn));
        if (look.state == Tracking) {
            // Nothing but the corners.
            area -= look.box.adjusted(kArm + kOut, -kOut, -kArm - kOut, kOut);
            area -= look.box.adjusted(-kOut, kArm + kOut, kOut, -kArm - kOut);
        } else {
            area |= badge(look);
        }
    }
    if (look.reason != nullptr)
        area |= look.pill;
    return area;
}

QRect TrackingBoxForm::badge(const Look& look) const {
    QRect place(0, 0, kBadge, kBadge);
    place.moveCenter(look.box.topRight() + QPoint(-kBadgeInset, kBadgeInset));
    place.moveLeft(between(visiblePart_.left(), place.left(), visiblePart_.right() + 1 - kBadge));
    place.moveTop(between(visiblePart_.top(), place.top(), visiblePart_.bottom() + 1 - kBadge));
    return place;
}

void TrackingBoxForm::paintEvent(QPaintEvent*) {
    QPainter painter(this);
    painter.setRenderHint(QPainter::Antialiasing);
    if (look_.state != NoFace) {
        paintFrame(painter);
        if (look_.state != Tracking)
            paintBadge(painter);
    }
    if (look_.reason != nullptr)
        paintPill(painter);
}

void TrackingBoxForm::paintFrame(QPainter& painter) const {
    QPainterPath path;
    if (look_.state == Tracking)
        path = corners(look_.box);
    else
        path.addRoundedRect(look_.box, kRadius, kRadius);
    const QRgb color = look_.state == Failed ? Theme::kDanger : Theme::kAccent;
    painter.setBrush(Qt::NoBrush);
    painter.setPen(QPen(Theme::color(Theme::kFrameGround), kGround, Qt::SolidLine, Qt::RoundCap));
    painter.drawPath(path);
    painter.setPen(QPen(Theme::color(color), kLine, Qt::SolidLine, Qt::RoundCap));
    painter.drawPath(path);
}

void TrackingBoxForm::paintBadge(QPainter& painter) const {
    const bool failed = look_.state == Failed;
    const QRect place = badge(look_);
    Paint::box(&painter, place, kBadge / 2.0, failed ? Theme::kDanger : Theme::kAccent);
    painter.setPen(QPen(Theme::color(failed ? Theme::kOnDanger : Theme::kOnAccent), kLine,
                        Qt::SolidLine, Qt::RoundCap, Qt::RoundJoin));
    const QPointF middle = QRectF(place).center();
    if (failed) {
        painter.drawLine(middle + QPointF(-9, -9), middle + QPointF(9, 9));
        painter.drawLine(middle + QPointF(9, -9), middle + QPointF(-9, 9));
    } else {
        const QPointF tick[] = {middle + QPointF(-11, 1), middle + QPointF(-3, 9),
                                middle + QPointF(12, -8)};
        painter.drawPolyline(tick, 3);
    }
}

void TrackingBoxForm::paintPill(QPainter& painter) const {
    const QRect& place = look_.pill;
    Paint::box(&painter, place, kPillHeight / 2.0, Theme::kVeil, Theme::kDanger, 1);
    Paint::icon(&painter, {place.x() + kPillSide, place.y(), kPillIcon, kPillHeight},
                QStringLiteral("fail_28.png"));
    const int left = place.x() + kPillSide + kPillIcon + kPillIconGap;
    TextFit::draw(&painter, {left, place.y(), place.right() + 1 - kPillSide - left, kPillHeight},
                  Qt::AlignLeft, *look_.reason, kPillRule, QFont::Medium, Theme::kStrong);
}
