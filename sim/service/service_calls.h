#pragma once

#include <QByteArray>
#include <QJsonObject>
#include <QObject>
#include <QString>

#include "sim/common/words.h"
#include "sim/service/http_server.h"

/// What the simulated service answers when the terminal calls, what it offers for download, and
/// the words that make it misbehave.
class ServiceCalls : public QObject, public WordSet {
    Q_OBJECT

 public:
    /// Listens at once, on the loopback address only; port 0 takes a free one.
    ServiceCalls(quint16 port, QObject* parent);

    /// The port that was taken, 0 if none could be had. Stays the same while the service is away.
    quint16 port() const { return port_; }
    QString errorString() const { return server_.errorString(); }

    /// The path of the firmware archive of @p version.
    static QString firmwarePath(const QString& version);
    /// The archive's content: made up, and always the same.
    static QByteArray firmware(const QString& version);

 signals:
    /// The terminal called: the name is the last part of the path without ".do", as "connect". The
    /// answer follows.
    void called(const QString& name, const QJsonObject& body);

 private:
    enum class Mood { Normal, Refusing, Hanging, Garbled };
    struct Call;

    /// The call that @p path means; null if it means none.
    static const Call* callAt(const QByteArray& path);
    HttpAnswer answer(const HttpMessage& request);
    HttpAnswer misbehave() const;
    QJsonObject answerCall(const Call& call, const HttpMessage& request,
                           const QJsonObject& body) const;
    QString setCode(const QString& text);
    QString setSlow(const QString& text);
    QString comeBack();

    HttpServer server_;
    quint16 port_ = 0;
    const QString token_;
    Mood mood_ = Mood::Normal;
    QString forcedCode_;
    QString forcedCall_;  // to which alone; empty for all
};
