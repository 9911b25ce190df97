#pragma once

#include <QDateTime>
#include <QObject>

/// Whether there is a signal on the network cable, and since when: since the start of the program
/// at the earliest. The kernel tells of changes; where it does not, look() finds them. GUI thread
/// only.
class CableWatch : public QObject {
    Q_OBJECT

 public:
    explicit CableWatch(QObject* parent);
    ~CableWatch() override;

    bool isPlugged() const { return plugged_; }
    const QDateTime& since() const { return since_; }
    void look();

 signals:
    void changed();

 private:
    void listen();

    int socket_ = -1;
    bool plugged_;
    QDateTime since_;
};
