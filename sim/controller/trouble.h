#pragma once

#include <QHash>
#include <QObject>
#include <QQueue>
#include <memory>

#include "sim/controller/subject.h"

/// What words have in store for the terminal's next requests: that they are refused, not answered,
/// answered late, or that the link drops in their place.
class Trouble : public Subject {
 public:
    explicit Trouble(Device& device);

    /// Has @p carryOut take @p request, unless something else is in store for it.
    void meet(const Request& request, const RequestHandler& carryOut);

 private:
    enum class Kind { Refuse, Silence, Delay, LoseLink };
    struct Event {
        Kind kind;
        int value = 0;  // the result, or milliseconds
    };

    QString add(Kind kind, const QString& text);
    void refuse(const Request& request, quint8 result);

    QHash<quint16, QQueue<Event>> waiting_;  // by request, in the order in which they were given
    std::unique_ptr<QObject> late_;          // the timers of late answers end with it
    QObject context_;
};
