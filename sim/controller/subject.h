#pragma once

#include <QByteArray>
#include <QJsonObject>
#include <QString>
#include <QVector>
#include <cstdint>
#include <cstring>
#include <functional>
#include <optional>

#include "sim/common/words.h"

class Device;

/// One frame from the terminal.
struct Request {
    quint16 code;
    quint8 p1;
    quint8 p2;
    QByteArray payload;

    /// The payload as the record @p T; nothing when it has another size.
    template <typename T>
    std::optional<T> record() const {
        if (payload.size() != static_cast<int>(sizeof(T)))
            return {};
        T read;
        std::memcpy(&read, payload.constData(), sizeof(T));
        return read;
    }
};

/// Everything that the simulated controller does about one subject: the requests it answers, the
/// control words it adds and its part of the stored state. A subject registers itself in its
/// constructor; subjects.cpp lists them all. Subjects share the Device and do not know each other;
/// a request may concern several, which then answer in the order of the list.
class Subject : public WordSet {
 public:
    using RequestHandler = std::function<void(const Request& request)>;

    explicit Subject(Device& device) : device_(device) {}
    virtual ~Subject() = default;
    Subject(const Subject&) = delete;
    Subject& operator=(const Subject&) = delete;

    /// The key of the subject's part of the stored state; empty if it has none.
    virtual QString stateKey() const { return {}; }
    virtual QJsonObject state() const { return {}; }
    /// Takes back what state() once gave. The file may have been edited by hand or damaged: values
    /// that make no sense are left at their defaults.
    virtual void restore(const QJsonObject& state) { Q_UNUSED(state) }

    const QVector<QPair<quint16, RequestHandler>>& requests() const { return requests_; }

 protected:
    void onRequest(quint16 code, const RequestHandler& handler);

    Device& device_;

 private:
    QVector<QPair<quint16, RequestHandler>> requests_;
};
