#pragma once

#include <QByteArray>
#include <QObject>
#include <QPointer>
#include <QTcpServer>
#include <QTcpSocket>
#include <QTimer>
#include <QVector>

#include "screens/facesearch/face_search_records.h"
#include "sim/common/control_port.h"
#include "sim/common/words.h"

/// A stand-in for an external face-search server, driven by words. It knows some people, takes each
/// face that it is asked about for the one that it was told, and ends the connection of whoever
/// sends it anything but a proper request.
///
/// Tests and the development program use it alike. Everything runs in the thread that made it; its
/// event loop must run.
class FaceSearchSim : public QObject, private WordSet {
    Q_OBJECT

 public:
    static constexpr quint16 kPort = 5000;
    static constexpr quint16 kControlPort = 15153;

    /// Listens at once, on the loopback address only; port 0 takes a free one. Check listening().
    FaceSearchSim(quint16 port, quint16 controlPort, QObject* parent = nullptr);
    ~FaceSearchSim() override;

    /// Whether both ports could be had.
    bool listening() const { return port_ != 0 && control_.port() != 0; }
    QString errorString() const;
    quint16 port() const { return port_; }
    quint16 controlPort() const { return control_.port(); }

    /// Carries out one line of words and returns the answer, whose last line begins with "ok" or
    /// "error". Nothing for an empty line.
    QString execute(const QString& line) { return table_.execute(line); }

    /// How many clients there are.
    int clients() const { return clients_.size(); }

 signals:
    /// A proper request has come. @p payload is all behind its kind and length; of a key exchange
    /// the key.
    void requested(int kind, const QByteArray& payload);
    /// The word `quit` was given.
    void quitRequested();
    /// The word `restart` was given.
    void restartRequested();

 private:
    enum class Fault { None, Silent, Empty, Short, Huge, Cut, Unending, Image, Kind };
    struct Client {
        QTcpSocket* socket;
        QByteArray received;
        QByteArray trickling;
    };

    void takePeople();
    void takeFaults();
    void takeConnections();
    QString addPerson(const QString& text);
    QString people() const;
    QString choose(const QString& text);
    QString tell(int kind, const QString& text);
    QString setFault(const QString& text);
    QString setTime(int* time, const QString& text);

    bool listen();
    void accept();
    void drop();
    void read(Client* client);
    /// Takes one request from what has come; false when there is none, or the client was cut off.
    bool takeRequest(Client* client);
    void refuse(Client* client, const char* why);
    void handle(Client* client, int kind, const QByteArray& payload);
    /// The message that says so, without faults.
    QByteArray answer(int kind, const FaceInfoRecord& person, const FaceRequestHeader& request);
    void send(QTcpSocket* socket, int kind, const QByteArray& payload);
    void trickle();
    Client* find(const QTcpSocket* socket);

    QVector<FaceInfoRecord> people_;
    int match_ = 0;              // in people_, -1 for nobody
    int delay_ = 0;              // milliseconds
    int pace_ = 0;               // milliseconds between two bytes, 0 for as fast as can be
    Fault fault_ = Fault::None;  // of the next answer
    QTcpServer server_;
    quint16 port_ = 0;
    QVector<Client*> clients_;
    QTimer trickle_;
    WordTable table_;
    ControlPort control_;
};
