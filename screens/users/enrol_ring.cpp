#include "screens/users/enrol_ring.h"

#include <QPaintEvent>
#include <QPainter>
#include <QPainterPath>
#include <QTimer>

#include "app/window_shell.h"
#include "base/device_paths.h"
#include "ui/paint.h"
#include "ui/pictures.h"
#include "ui/text_fit.h"
#include "ui/theme.h"

namespace {

const QRect kRing(60, 12, 360, 360);
const QRect kHole(68, 20, 344, 344);
constexpr int kFaceDrop = 44;  // of the silhouette against the ring
constexpr int kTextMiddle = 424;
constexpr int kTextHeight = 92;
constexpr int kSuffixDrop = 10;  // brings both to one baseline
constexpr int kSuffixGap = 4;
constexpr int kLeftBehind = 100;  // milliseconds
constexpr TextFit::Rule kNumber{{{64, 1}}};
constexpr TextFit::Rule kSuffix{{{36, 1}}};

}  // namespace

void EnrolRing::setPercent(int percent) {
    const int bounded = qBound(0, percent, 100);
    if (percent_ == bounded)
        return;
    percent_ = bounded;
    update(kRing);
    update(0, kTextMiddle - kTextHeight / 2, width(), kTextHeight);
}

void EnrolRing::applyScripts(const Lookup& lookup) {
    text_.apply(lookup);
    update();
}

void EnrolRing::hideEvent(QHideEvent* event) {
    QWidget::hideEvent(event);
    // Half a megabyte goes back to the system, for which the next screen does not wait.
    QTimer::singleShot(kLeftBehind, this, [this] {
        if (isVisible())
            return;
        part_ = QPixmap();
        partOf_ = -1;
    });
}

void EnrolRing::paintEvent(QPaintEvent* event) {
    QPainter painter(this);
    painter.setClipRegion(event->region());
    if (!WindowShell::onPanel()) {
        painter.setClipRegion(event->region() & kHole);
        Paint::cameraPicture(&painter, QPoint(0, -y() - kFaceDrop));
        painter.setClipRegion(event->region());
    }
    const QColor ground = Theme::color(Theme::kBackground);
    QPainterPath corners;
    corners.addRect(kHole);
    corners.addEllipse(kHole);
    painter.setRenderHint(QPainter::Antialiasing);
    painter.fillPath(corners, ground);
    painter.setRenderHint(QPainter::Antialiasing, false);
    const QRegion around = event->region() - kHole;
    for (const QRect& part : around)
        painter.fillRect(part, ground);
    if (partOf_ != percent_) {
        const QString name = QStringLiteral("/zel1/image/percent_%1.png").arg(percent_);
        // Each capture begins with the same one; of the others a screen sees most only once.
        part_ = percent_ == 0 ? Pictures::kept(name) : Pictures::file(name);
        partOf_ = percent_;
    }
    painter.drawPixmap(kRing.topLeft(), part_);
    if (text_.key().isEmpty())
        return;

    ScriptHandler::Script number = TextFit::roleSized(text_.entry());
    ScriptHandler::Script suffix = number;
    const int place = number.script.indexOf(QLatin1String("%1"));
    suffix.script = place < 0 ? QString() : number.script.mid(place + 2);
    number.script = QString::number(percent_);
    const int wide = TextFit::width(number, kNumber, QFont::Bold);
    const int all = wide + kSuffixGap + TextFit::width(suffix, kSuffix, QFont::Medium);
    QRect line((width() - all) / 2, kTextMiddle - kTextHeight / 2, wide, kTextHeight);
    const QRgb ink = Theme::kAccent;
    TextFit::draw(&painter, line, Qt::AlignLeft, number, kNumber, QFont::Bold, ink);
    line.setLeft(line.x() + wide + kSuffixGap);
    line.setRight(width());
    TextFit::draw(&painter, line.translated(0, kSuffixDrop), Qt::AlignLeft, suffix, kSuffix,
                  QFont::Medium, ink);
}
