#include "screens/common/device_request.h"

#include <QTimer>

#include "app/window_form.h"
#include "app/window_shell.h"
#include "link/device_message.h"

DeviceRequest::DeviceRequest(QObject* parent) : QObject(parent), timer_(new QTimer(this)) {
    timer_->setObjectName(QStringLiteral("answerTimer"));
    timer_->setSingleShot(true);
    connect(timer_, &QTimer::timeout, this, [this] {
        end();
        emit failed(Failure::TimedOut);
    });
}

bool DeviceRequest::send(std::uint16_t code, std::uint8_t p1, std::uint8_t p2,
                         const QByteArray& payload, const QVector<std::uint16_t>& answers,
                         int milliseconds) {
    cancel();
    if (!WindowForm::shell()->SendCommand(code, p1, p2, static_cast<unsigned short>(payload.size()),
                                          payload.constData()))
        return false;
    await(answers, milliseconds);
    return true;
}

void DeviceRequest::await(const QVector<std::uint16_t>& answers, int milliseconds) {
    answers_ = answers;
    timer_->start(milliseconds);
}

void DeviceRequest::extend() {
    if (isWaiting())
        timer_->start();
}

bool DeviceRequest::isWaiting() const {
    return timer_->isActive();
}

bool DeviceRequest::take(const DeviceMessage& message) {
    if (!isWaiting() || !answers_.contains(message.command))
        return false;
    // Before the answer is told: whoever hears it may ask for the next thing.
    end();
    emit answered(message);
    return true;
}

void DeviceRequest::cancel() {
    timer_->stop();
}

void DeviceRequest::end() {
    cancel();
    // Whoever has waited for it has the menus' whole time to read what comes of it.
    WindowForm::shell()->ResetMenuTimer();
}

void DeviceRequest::linkLost() {
    if (!isWaiting())
        return;
    end();
    emit failed(Failure::LinkDown);
}
