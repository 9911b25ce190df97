#include "screens/factory/camera_test_form.h"

#include <QPaintEvent>
#include <QPainter>

#include "app/window_shell.h"
#include "link/command_code.h"
#include "ui/paint.h"

CameraPicture::CameraPicture(QWidget* parent) : QWidget(parent) {
    setObjectName(QStringLiteral("cameraPicture"));
    // What its parents have painted there would cover the camera's picture.
    setAttribute(Qt::WA_OpaquePaintEvent);
}

void CameraPicture::paintEvent(QPaintEvent* event) {
    QPainter painter(this);
    painter.setClipRegion(event->region());
    if (WindowShell::onPanel()) {
        painter.setCompositionMode(QPainter::CompositionMode_Source);
        painter.fillRect(rect(), Qt::transparent);
        return;
    }
    Paint::cameraPicture(&painter, -mapTo(window(), QPoint()));
}

void CameraTestForm::windowInEvent() {
    WindowForm::shell()->SendCommand(command::CameraPictureStart, 0, 0);
    FactoryTestForm::windowInEvent();
}

void CameraTestForm::windowOutEvent() {
    FactoryTestForm::windowOutEvent();
    WindowForm::shell()->SendCommand(command::CameraPictureStop, 0, 0);
}
