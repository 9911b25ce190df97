#include "screens/recognize/peer_sign.h"

#include <QPainter>

#include "app/window_shell.h"
#include "ui/paint.h"
#include "ui/text_fit.h"
#include "ui/theme.h"

namespace {

constexpr int kIcon = 28;
constexpr int kLeft = 12;
constexpr int kGap = 8;
constexpr int kRight = 18;

}  // namespace

PeerSign::PeerSign(QWidget* parent) : QWidget(parent) {
    setAttribute(Qt::WA_TransparentForMouseEvents);
    hide();
}

void PeerSign::setPeers(const WindowShell& shell) {
    QString key;
    if (!shell.linkUp())
        key = QStringLiteral("Info_ControllerNotReached");
    else if (shell.serviceInUse() && !shell.serviceReached())
        key = QStringLiteral("Info_ServiceNotReached");
    if (key != text_.key()) {
        text_.setKey(key);
        if (!key.isEmpty())
            text_.setEntry(shell.getScript(key));
        update();
    }
    setVisible(!key.isEmpty());
}

void PeerSign::applyScripts(const Lookup& lookup) {
    text_.apply(lookup);
    update();
}

void PeerSign::paintEvent(QPaintEvent*) {
    QPainter painter(this);
    const int room = width() - kLeft - kIcon - kGap - kRight;
    const int text = qMin(TextFit::width(text_.entry(), TextFit::kChip, QFont::Medium), room);
    const QRect pill((room - text) / 2, 0, width() - room + text, height());
    Paint::box(&painter, pill, height() / 2.0, Theme::kVeil, Theme::kOutline, 1);
    Paint::icon(&painter, {pill.x() + kLeft, 0, kIcon, height()}, QStringLiteral("warning_28.png"));
    TextFit::draw(&painter, {pill.x() + kLeft + kIcon + kGap, 0, text, height()}, Qt::AlignLeft,
                  text_.entry(), TextFit::kChip, QFont::Medium, Theme::kStrong);
}
