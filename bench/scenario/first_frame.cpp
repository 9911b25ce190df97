#include <time.h>
#include <unistd.h>

#include <QCoreApplication>
#include <QEvent>
#include <cstdio>

namespace {

/// Linked into a program, writes to standard output when the program has painted its first frame:
/// the monotonic clock in nanoseconds. The program itself need not know.
class FirstFrame : public QObject {
 public:
    using QObject::QObject;

 protected:
    bool eventFilter(QObject* watched, QEvent* event) override {
        if (event->type() == QEvent::Paint) {
            QCoreApplication::instance()->removeEventFilter(this);
            // Taken up as soon as all widgets have been painted and the frame has been handed over.
            QCoreApplication::postEvent(this, new QEvent(QEvent::User), Qt::HighEventPriority);
        }
        return QObject::eventFilter(watched, event);
    }

    void customEvent(QEvent*) override {
        timespec now{};
        ::clock_gettime(CLOCK_MONOTONIC, &now);
        std::printf("first frame %lld\n", now.tv_sec * 1000000000LL + now.tv_nsec);
        std::fflush(stdout);
    }
};

void watchFirstFrame() {
    auto* application = QCoreApplication::instance();
    application->installEventFilter(new FirstFrame(application));
}
Q_COREAPP_STARTUP_FUNCTION(watchFirstFrame)

}  // namespace
