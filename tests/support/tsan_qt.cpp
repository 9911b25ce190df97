// Tells the thread sanitizer what it cannot see in a Qt that is not built for it: that a mutex
// orders what is done under it, that whoever waits for a thread sees all that it has done, and that
// a call posted to an object comes after what its sender has done before. Linked into tests in
// front of Qt's own functions, which it calls.
#include <dlfcn.h>
#include <sanitizer/tsan_interface.h>

#include <QDeadlineTimer>
#include <QEvent>
#include <QMutex>
#include <QThread>

namespace {

template <typename Function>
Function* next(const char* name) {
    return reinterpret_cast<Function*>(::dlsym(RTLD_NEXT, name));
}

/// A function that is posted to an object: called after all that its sender has done before, and
/// deleted after that, by sender or receiver, whoever lets go of it last.
class PostedFunction : public QtPrivate::QSlotObjectBase {
 public:
    explicit PostedFunction(QSlotObjectBase* function)
        : QSlotObjectBase(&impl), function_(function) {
        __tsan_release(this);
    }

 private:
    static void impl(int which, QSlotObjectBase* self, QObject* receiver, void** values, bool*) {
        auto* const posted = static_cast<PostedFunction*>(self);
        __tsan_acquire(posted);
        if (which == Call) {
            posted->function_->call(receiver, values);
            __tsan_release(posted);
        } else if (which == Destroy) {
            posted->function_->destroyIfLastRef();
            delete posted;
        }
    }

    QSlotObjectBase* const function_;
};

/// Stands for the receivers of a signal, which only Qt knows.
char signalled;

void acquireSignalled(const QEvent* event) {
    if (event->type() == QEvent::MetaCall)
        __tsan_acquire(&signalled);
}

}  // namespace

void QMutex::lock() {
    static auto* const real = next<void(QMutex*)>("_ZN6QMutex4lockEv");
    real(this);
    __tsan_acquire(this);
}

bool QMutex::tryLock(int timeout) {
    static auto* const real = next<bool(QMutex*, int)>("_ZN6QMutex7tryLockEi");
    const bool locked = real(this, timeout);
    if (locked)
        __tsan_acquire(this);
    return locked;
}

void QMutex::unlock() {
    static auto* const real = next<void(QMutex*)>("_ZN6QMutex6unlockEv");
    __tsan_release(this);
    real(this);
}

void QThread::start(Priority priority) {
    static auto* const real = next<void(QThread*, Priority)>("_ZN7QThread5startENS_8PriorityE");
    connect(
        this, &QThread::finished, this, [this] { __tsan_release(this); }, Qt::DirectConnection);
    real(this, priority);
}

bool QThread::wait(QDeadlineTimer deadline) {
    static auto* const real =
        next<bool(QThread*, QDeadlineTimer)>("_ZN7QThread4waitE14QDeadlineTimer");
    const bool ended = real(this, deadline);
    if (ended)
        __tsan_acquire(this);
    return ended;
}

void QMetaObject::activate(QObject* sender, const QMetaObject* type, int signal, void** values) {
    static auto* const real = next<void(QObject*, const QMetaObject*, int, void**)>(
        "_ZN11QMetaObject8activateEP7QObjectPKS_iPPv");
    __tsan_release(&signalled);
    real(sender, type, signal, values);
}

bool QMetaObject::invokeMethodImpl(QObject* object, QtPrivate::QSlotObjectBase* slot,
                                   Qt::ConnectionType type, void* result) {
    static auto* const real =
        next<bool(QObject*, QtPrivate::QSlotObjectBase*, Qt::ConnectionType, void*)>(
            "_ZN11QMetaObject16invokeMethodImplEP7QObjectPN9QtPrivate15QSlotObjectBaseEN2Qt"
            "14ConnectionTypeEPv");
    return real(object, new PostedFunction(slot), type, result);
}

bool QObject::event(QEvent* event) {
    static auto* const real = next<bool(QObject*, QEvent*)>("_ZN7QObject5eventEP6QEvent");
    acquireSignalled(event);
    return real(this, event);
}

bool QThread::event(QEvent* event) {
    static auto* const real = next<bool(QThread*, QEvent*)>("_ZN7QThread5eventEP6QEvent");
    acquireSignalled(event);
    return real(this, event);
}
