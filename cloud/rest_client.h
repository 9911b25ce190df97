#pragma once

#include <QHash>
#include <QJsonObject>
#include <QList>
#include <QNetworkRequest>
#include <QThread>
#include <QUrl>
#include <QVariant>
#include <memory>
#include <mutex>

#include "cloud/cloud_host.h"
#include "cloud/command_gate.h"
#include "cloud/parameters.h"
#include "cloud/service_contact.h"

class QNetworkReply;
class RestServer;

/// The terminal's client of the management service, and the thread that serves the REST server.
///
/// Requests are built and answered in the thread that owns the object; only run() is the thread's
/// own. SendCommand() may be called from any thread.
class RestClass : public QThread {
    Q_OBJECT

 public:
    /// Numbers of the requests.
    enum Command {
        kConnect = 0,          // FR01
        kConnectionCheck = 1,  // FR03
        kUserInOutLog = 3,     // FR21
        kUserEnroll = 8,       // FR35
        kUserDeleted = 9,      // FR36
    };

    /// What SendCommand() answers.
    enum SendResult { kAccepted = 0, kSameInProgress = 2, kAnyInProgress = 6 };

    /// Milliseconds without a byte in either direction after which a request is given up.
    static constexpr int kTransferTimeout = 10000;

    /// @p host outlives the object.
    RestClass(CloudHost& host, QObject* parent);
    /// Ends the server and all requests under way, without a word to the host.
    ~RestClass() override;

    /// The one instance, null when there is none.
    static RestClass* instance();

    /// Ends the server: run() returns at once, also when it has not begun yet. Any thread.
    void stop();

    /// Starts the request @p command with its record in @p data, unless one of the same number is
    /// under way (kSameInProgress). A number without a request is accepted and does nothing.
    int SendCommand(int command, const QVariant& data);
    /// The same for a caller that waits until no request at all is under way (kAnyInProgress);
    /// @p extra comes back with the completion.
    int SendCommand(int command, const QVariant& data, int extra);

    /// Reports a visitor; @p data holds an FR51_Parameter. The answer is not looked at.
    void runFR51(const QVariant& data);

    /// The addresses of the management service, of this terminal and of its network interface, as
    /// requests carry them.
    QString getManagerIP() const;
    QString getReaderIP() const;
    QString getMacAddress() const;
    /// Where the management service is, "http://a.b.c.d:port/".
    QString getTargetURL() const;
    /// A request to @p url with the headers that every request carries.
    QNetworkRequest makeHeaderForm(const QUrl& url) const;

    /// Takes the settings in force over. Another address or port of the service is another service:
    /// what the one before has given or may yet answer is forgotten.
    void takeSettings();

    /// What its calls have found out about the service.
    ServiceContact& contact() { return contact_; }

    /// Gives requests up after @p milliseconds instead of kTransferTimeout.
    void setTransferTimeout(int milliseconds) { transferTimeout_ = milliseconds; }

 signals:
    void signalRequestCommand(const QVariant& procIdx);
    /// A request of the number @p command has ended, however it ended.
    void signalReplyFinishedCommand(int command);

 protected:
    void run() override;

 private:
    using ReplySlot = void (RestClass::*)(QNetworkReply* reply);
    /// What a service answered: the result code, 0 when no answer came and -1 when it holds none,
    /// and the object.
    struct Answer {
        int resultCode = 0;
        QJsonObject object;
        ServiceContact::Failure failure = ServiceContact::Failure::None;

        QString message() const { return object.value(QLatin1String("resultMessage")).toString(); }
    };

    void slotSendCommand(const QVariant& procIdx);
    void runFR01(const QVariant& sendData);
    void runFR03(const QVariant& sendData);
    void runFR21(const QVariant& sendData);
    void runFR35(const QVariant& sendData);
    void runFR36(const QVariant& sendData);
    void replyFinished_FR01(QNetworkReply* reply);
    void replyFinished_FR03(QNetworkReply* reply);
    void replyFinished_FR21(QNetworkReply* reply);
    void replyFinished_FR35(QNetworkReply* reply);
    void replyFinished_FR36(QNetworkReply* reply);
    void post(const QString& path, const QJsonObject& body, const QVariant& sendData,
              ReplySlot replySlot);
    void finishReport(QNetworkReply* reply, const char* mark);
    /// @p mark begins the line about a call that has failed.
    Answer readAnswer(QNetworkReply* reply, const char* mark = "");
    /// Has the contact know how a call went that tells whether the service can be reached.
    void noteContact(const Answer& answer);
    void noteFault(const QNetworkReply* reply, const QString& fault, const char* mark = "");
    void SendCompleted(const ProcIDX& procIdx);

    CloudHost& host_;
    _gui_menu_ settings_{};
    int transferTimeout_ = kTransferTimeout;
    QString terminalToken_;
    QString serviceToken_;
    ServiceContact contact_{nullptr};
    QList<QNetworkReply*> running_;
    QHash<QString, QString> faults_;  // what each call that fails has failed for

    CommandGate gate_;
    std::mutex serverLock_;
    std::unique_ptr<RestServer> server_;
    bool stopped_ = false;
};
