#include "screens/factory/pattern_test_form.h"

#include <QMouseEvent>
#include <QPainter>

#include "ui/key_click.h"
#include "ui/label_button.h"

PatternView::PatternView(QWidget* screen, int count, Draw draw)
    : QWidget(screen), count_(count), draw_(draw) {
    setObjectName(QStringLiteral("patternView"));
    setAttribute(Qt::WA_OpaquePaintEvent);
    setAttribute(Qt::WA_NoMousePropagation);
    hide();
}

void PatternView::begin() {
    pattern_ = 0;
    setGeometry(parentWidget()->rect());
    raise();
    show();
}

void PatternView::mousePressEvent(QMouseEvent*) {
    KeyClick::send();
    if (++pattern_ < count_) {
        update();
        return;
    }
    hide();
    emit finished();
}

void PatternView::paintEvent(QPaintEvent* event) {
    QPainter painter(this);
    painter.setClipRegion(event->region());
    draw_(&painter, rect(), pattern_);
}

void PatternTestForm::setPatterns(int count, PatternView::Draw draw) {
    view_ = new PatternView(this, count, draw);
    connect(addAction("Button_FactoryShow", "showButton"), &LabelButton::touched, this, [this] {
        view_->begin();
        // A second touch of the same finger would skip the first pattern.
        shield();
    });
    connect(view_, &PatternView::finished, this, [this] {
        shield();
        if (isRunning(0))
            askPerson(0);
    });
}

void PatternTestForm::windowOutEvent() {
    FactoryTestForm::windowOutEvent();
    view_->hide();
}
