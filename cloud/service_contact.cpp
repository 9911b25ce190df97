#include "cloud/service_contact.h"

#include "base/clock.h"

QDateTime ServiceContact::connectedSince() const {
    return state_ == State::Reached ? connectedSince_ : QDateTime();
}

void ServiceContact::tried() {
    // What the last attempt has failed for is worth more until this one is through.
    if (state_ != State::NotTried)
        return;
    state_ = State::Trying;
    emit changed();
}

void ServiceContact::reached() {
    lastReached_ = Clock::now();
    if (state_ != State::Reached)
        connectedSince_ = lastReached_;
    state_ = State::Reached;
    failure_ = Failure::None;
    emit changed();
}

void ServiceContact::failed(Failure failure, int resultCode, const QString& message) {
    state_ = State::Failed;
    failedAt_ = Clock::now();
    failure_ = failure;
    resultCode_ = resultCode;
    message_ = message;
    emit changed();
}

void ServiceContact::forget() {
    lastReached_ = QDateTime();
    interrupted();
}

void ServiceContact::interrupted() {
    state_ = State::NotTried;
    failure_ = Failure::None;
    emit changed();
}
