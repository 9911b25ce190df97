#include "base/clock.h"

namespace {

QDateTime& fixedTime() {
    static QDateTime time;
    return time;
}

}  // namespace

namespace Clock {

QDateTime now() {
    return fixedTime().isValid() ? fixedTime() : QDateTime::currentDateTime();
}

void fix(const QDateTime& time) {
    fixedTime() = time;
}

}  // namespace Clock
