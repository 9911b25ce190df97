#pragma once

#include <QByteArray>
#include <QObject>
#include <QVector>
#include <cstdint>

struct DeviceMessage;
class QTimer;

/// Something that the device controller has been asked for and that is waited for, one at a time:
/// it ends with an answer, after its time or with the link, and is told of once. The menus' time
/// begins anew then.
///
/// A request whose parent is a TitledForm gets that screen's answers, keeps it from timing out and
/// ends with it without further ado; any other owner calls take(), cancel() and linkLost() itself.
/// GUI thread only.
class DeviceRequest : public QObject {
    Q_OBJECT

 public:
    enum class Failure { LinkDown, TimedOut };
    Q_ENUM(Failure)

    explicit DeviceRequest(QObject* parent);

    /// Sends a frame, and waits for one of @p answers for @p milliseconds at most. False, with
    /// nothing sent, waited for or told, when there is no link. What was waited for before is
    /// forgotten.
    bool send(std::uint16_t code, std::uint8_t p1, std::uint8_t p2, const QByteArray& payload,
              const QVector<std::uint16_t>& answers, int milliseconds);
    /// The same with a packed record as the payload.
    template <typename Record>
    bool sendRecord(std::uint16_t code, std::uint8_t p1, std::uint8_t p2, const Record& record,
                    const QVector<std::uint16_t>& answers, int milliseconds) {
        const QByteArray payload(reinterpret_cast<const char*>(&record), sizeof record);
        return send(code, p1, p2, payload, answers, milliseconds);
    }
    /// Waits without sending, for instance for the next frame of an answer of several.
    void await(const QVector<std::uint16_t>& answers, int milliseconds);
    /// The controller is at work: its time begins anew.
    void extend();
    bool isWaiting() const;

    /// Ends the request with @p message if that is one of its answers. Whether it was.
    bool take(const DeviceMessage& message);
    /// Ends it without a word.
    void cancel();
    void linkLost();

 signals:
    void answered(const DeviceMessage& message);
    void failed(DeviceRequest::Failure why);

 private:
    void end();

    QVector<std::uint16_t> answers_;
    QTimer* const timer_;  // runs as long as the request is waited for
};
