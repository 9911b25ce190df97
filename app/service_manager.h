#pragma once

#include <QElapsedTimer>
#include <QObject>
#include <QTimer>

/// Tells the service manager that has started this program, if one has, how the program fares: that
/// it is up, that it is alive, that it ends. As long as the manager does not hear that it is alive
/// often enough, it is free to start it anew. GUI thread only.
///
/// Alive is a program whose GUI thread handles an event within 2 seconds, whatever else waits to be
/// handled. Nothing happens, and no timer runs, where nobody listens.
class ServiceManager : public QObject {
    Q_OBJECT

 public:
    /// Longer than an event may wait before the program counts as hung, in milliseconds.
    static constexpr int kLongestWait = 2000;

    /// Takes what the manager has left in the environment, so that no child process speaks for
    /// this one. To be made before the first thread.
    explicit ServiceManager(QObject* parent = nullptr);
    ~ServiceManager() override;

    /// Says that the program is up as soon as its event loop runs, and from then on that it lives.
    void start();
    /// Says that the program ends, and nothing more.
    void stopping();

 protected:
    void customEvent(QEvent* event) override;

 private:
    void ask();
    void say(const char* message) const;

    QByteArray address_;
    int socket_ = -1;
    QTimer timer_;
    QElapsedTimer asked_;
};
