#include "sim/facesearch/face_search_sim.h"

#include <QLoggingCategory>
#include <QRegularExpression>
#include <QTextCodec>
#include <algorithm>
#include <cstring>

#include "sim/common/portrait.h"

Q_LOGGING_CATEGORY(simFaceLog, "zel.sim.facesearch", QtInfoMsg)

namespace {

constexpr int kKeyLength = 451;
constexpr int kSecretLength = 256;
/// Longer requests than a client would send.
constexpr quint32 kMaxRequest = 16 * 1024 * 1024;
constexpr int kLongestTime = 24 * 3600 * 1000;  // milliseconds
constexpr int kMostTold = 100000;

/// Whom a new simulated server knows, as for the word `person`.
constexpr const char* kPeople[] = {
    "10000001 95 홍길동/부장/개발본부/단말기팀",
    "10000002 88 김수한무거북이와두/과장/경영지원본부/총무팀/시설파트",
    "10000003 72 Jane Doe/Engineer/R&D/Terminals",
};

template <std::size_t size>
bool setText(char (&field)[size], const QString& text) {
    const QTextCodec* codec = QTextCodec::codecForName("EUC-KR");
    if (codec == nullptr || !codec->canEncode(text))
        return false;
    const QByteArray bytes = codec->fromUnicode(text);
    if (bytes.size() > static_cast<int>(size))
        return false;
    std::fill(std::begin(field), std::end(field), '\0');
    std::copy(bytes.begin(), bytes.end(), field);
    return true;
}

template <std::size_t size>
QString textOf(const char (&field)[size]) {
    const auto length = static_cast<int>(::strnlen(field, size));
    return QTextCodec::codecForName("EUC-KR")->toUnicode(field, length);
}

template <class Record>
QByteArray bytesOf(const Record& record) {
    return {reinterpret_cast<const char*>(&record), sizeof record};
}

template <class Record>
Record recordOf(const QByteArray& bytes) {
    Record record;
    std::memcpy(&record, bytes.constData(), sizeof record);
    return record;
}

quint32 lengthAt(const QByteArray& bytes, int offset) {
    quint32 length = 0;
    std::memcpy(&length, bytes.constData() + offset, sizeof length);
    return length;
}

bool isTime(const FaceTimeStamp& time) {
    return time.month >= 1 && time.month <= 12 && time.day >= 1 && time.day <= 31 &&
           time.hour < 24 && time.minute < 60 && time.second < 61 && time.hundredths < 100 &&
           time.tenThousandths < 100;
}

/// What is wrong with a request, null for nothing.
const char* faultOf(int kind, const QByteArray& payload) {
    if (kind == face_message::KeyExchange)
        return payload.startsWith("-----BEGIN PUBLIC KEY-----\n") &&
                       payload.endsWith("-----END PUBLIC KEY-----\n")
                   ? nullptr
                   : "no public key";
    if (kind == face_message::FaceImage)
        return payload.size() == sizeof(FaceImageRequest) &&
                       isTime(recordOf<FaceImageRequest>(payload).time)
                   ? nullptr
                   : "no image request";
    constexpr int kHeader = sizeof(FaceRequestHeader);
    if (payload.size() < kHeader)
        return "no whole header";
    const auto header = recordOf<FaceRequestHeader>(payload);
    const auto zero = [](auto value) { return value == 0; };
    if (header.one != 1 || header.zero != 0 || header.four != 4 ||
        QByteArray(payload.constData() + offsetof(FaceRequestHeader, number), 16) !=
            QByteArray(16, '\0') ||
        !std::all_of(std::begin(header.reserved2), std::end(header.reserved2), zero))
        return "constants that are others";
    if (!isTime(header.time))
        return "a time that is none";
    if (header.length != static_cast<quint32>(payload.size() - kHeader))
        return "a length of data that is another";
    return nullptr;
}

}  // namespace

FaceSearchSim::FaceSearchSim(quint16 port, quint16 controlPort, QObject* parent)
    : QObject(parent),
      port_(port),
      control_([this](const QString& line) { return execute(line); }, nullptr) {
    takePeople();
    takeFaults();
    takeConnections();
    table_.add(*this);
    for (const char* person : kPeople)
        addPerson(QString::fromUtf8(person));
    connect(&trickle_, &QTimer::timeout, this, &FaceSearchSim::trickle);
    connect(&server_, &QTcpServer::newConnection, this, &FaceSearchSim::accept);
    port_ = listen() ? server_.serverPort() : 0;
    control_.listen(controlPort);
}

FaceSearchSim::~FaceSearchSim() {
    drop();
}

QString FaceSearchSim::errorString() const {
    return port_ == 0 ? server_.errorString() : control_.errorString();
}

void FaceSearchSim::takePeople() {
    onWord("person",
           "ID CONFIDENCE NAME[/POSITION[/DEPARTMENT...]]: somebody new, with up to four "
           "departments; each text 20 bytes of EUC-KR at most",
           [this](const QString& text) { return addPerson(text); });
    onWord("people", "who is known", [this](const QString&) { return people(); });
    onWord("match", "ID|nobody: whom the next faces belong to",
           [this](const QString& text) { return choose(text); });
    onWord("tell", "ID [TIMES]: tell all clients who is there, unasked",
           [this](const QString& text) { return tell(face_message::FaceInfo, text); });
    onWord("image", "ID [TIMES]: send them the picture of somebody",
           [this](const QString& text) { return tell(face_message::FaceImage, text); });
    onWord("both", "ID [TIMES]: send them both",
           [this](const QString& text) { return tell(face_message::FaceInfoAndImage, text); });
}

void FaceSearchSim::takeFaults() {
    onWord("delay", "MS: answer requests so much later",
           [this](const QString& text) { return setTime(&delay_, text); });
    onWord("trickle", "MS: send a byte at a time, with so much between two",
           [this](const QString& text) { return setTime(&pace_, text); });
    onWord("fault",
           "silent|empty|short|huge|cut|unending|image|kind: the next answer is none, has no "
           "payload, half of it, announces 4 GB, ends in the middle with the connection, has texts "
           "without an end, a picture larger than itself, a kind that nobody knows",
           [this](const QString& text) { return setFault(text); });
    onWord("normal", "no delay, no trickling, no fault", [this](const QString&) {
        delay_ = pace_ = 0;
        fault_ = Fault::None;
        return done();
    });
}

void FaceSearchSim::takeConnections() {
    onWord("drop", "end all connections", [this](const QString&) {
        drop();
        return done();
    });
    onWord("away", "end all connections and take no new ones", [this](const QString&) {
        server_.close();
        drop();
        return done();
    });
    onWord("back", "take connections again", [this](const QString&) {
        return server_.isListening() || listen() ? done() : failed(server_.errorString());
    });
    onWord("clients", "how many there are",
           [this](const QString&) { return done(QString::number(clients_.size())); });
    onWord("quit", "end the simulated server", [this](const QString&) {
        emit quitRequested();
        return done();
    });
    onWord("restart", "start the simulated server anew, when it was built again",
           [this](const QString&) {
               emit restartRequested();
               return done();
           });
}

// --- Words ---------------------------------------------------------------------------------

QString FaceSearchSim::addPerson(const QString& text) {
    const QString id = text.section(QLatin1Char(' '), 0, 0);
    bool ok = false;
    const uint confidence = text.section(QLatin1Char(' '), 1, 1).toUInt(&ok);
    const QStringList texts = text.section(QLatin1Char(' '), 2).split(QLatin1Char('/'));
    FaceInfoRecord person{};
    char shortId[sizeof FaceImageHead::personId];
    if (!ok || confidence > 255 || id.isEmpty() || texts.size() > 6)
        return failed(QStringLiteral("ID CONFIDENCE NAME[/POSITION[/DEPARTMENT...]]"));
    if (!setText(shortId, id) || !setText(person.personId, id) ||
        !setText(person.name, texts.value(0)) || !setText(person.position, texts.value(1)) ||
        !setText(person.department1, texts.value(2)) ||
        !setText(person.department2, texts.value(3)) ||
        !setText(person.department3, texts.value(4)) ||
        !setText(person.department4, texts.value(5)))
        return failed(QStringLiteral("a text takes 20 bytes of EUC-KR at most"));
    person.confidence = static_cast<quint8>(confidence);
    people_.append(person);
    return done();
}

QString FaceSearchSim::people() const {
    QString lines;
    for (int i = 0; i < people_.size(); ++i) {
        const FaceInfoRecord& person = people_.at(i);
        lines += QStringLiteral("%1%2 %3 %4/%5/%6/%7/%8/%9\n")
                     .arg(QLatin1String(i == match_ ? "* " : "  "), textOf(person.personId),
                          QString::number(person.confidence), textOf(person.name),
                          textOf(person.position), textOf(person.department1),
                          textOf(person.department2), textOf(person.department3),
                          textOf(person.department4));
    }
    return lines + done();
}

QString FaceSearchSim::choose(const QString& text) {
    const auto found = std::find_if(people_.cbegin(), people_.cend(), [&](const auto& person) {
        return textOf(person.personId) == text;
    });
    if (found == people_.cend() && text != QLatin1String("nobody"))
        return failed(QStringLiteral("'people' lists who there is"));
    match_ = found == people_.cend() ? -1 : static_cast<int>(found - people_.cbegin());
    return done();
}

QString FaceSearchSim::tell(int kind, const QString& text) {
    const int before = match_;
    const QString chosen = choose(text.section(QLatin1Char(' '), 0, 0));
    const int person = std::exchange(match_, before);
    if (!chosen.startsWith(QLatin1String("ok")) || person < 0)
        return failed(QStringLiteral("'people' lists who there is"));
    const QString times = text.section(QLatin1Char(' '), 1);
    const int count = times.isEmpty() ? 1 : times.toInt();
    if (count < 1 || count > kMostTold)
        return failed(QStringLiteral("1 to %1 times").arg(kMostTold));
    const QByteArray payload = answer(kind, people_.at(person), {});
    const QVector<Client*> clients = clients_;
    for (int i = 0; i < count; ++i) {
        for (const Client* client : clients)
            send(client->socket, kind, payload);
    }
    return done();
}

QString FaceSearchSim::setFault(const QString& text) {
    static const QStringList names{QStringLiteral("silent"), QStringLiteral("empty"),
                                   QStringLiteral("short"),  QStringLiteral("huge"),
                                   QStringLiteral("cut"),    QStringLiteral("unending"),
                                   QStringLiteral("image"),  QStringLiteral("kind")};
    const int found = names.indexOf(text);
    if (found < 0)
        return failed(names.join(QLatin1Char(' ')));
    fault_ = static_cast<Fault>(found + 1);
    return done();
}

QString FaceSearchSim::setTime(int* time, const QString& text) {
    bool ok = false;
    const int value = text.toInt(&ok);
    if (!ok || value < 0 || value > kLongestTime)
        return failed(QStringLiteral("milliseconds"));
    *time = value;
    return done();
}

// --- Connections ---------------------------------------------------------------------------

bool FaceSearchSim::listen() {
    return server_.listen(QHostAddress(QHostAddress::LocalHost), port_);
}

void FaceSearchSim::accept() {
    while (QTcpSocket* socket = server_.nextPendingConnection()) {
        auto* client = new Client{socket, {}, {}};
        clients_.append(client);
        qCInfo(simFaceLog, "a client is there");
        connect(socket, &QTcpSocket::readyRead, this, [this, client] { read(client); });
        connect(socket, &QTcpSocket::disconnected, this, [this, client] {
            qCInfo(simFaceLog, "a client has gone");
            clients_.removeOne(client);
            client->socket->deleteLater();
            delete client;
        });
    }
}

void FaceSearchSim::drop() {
    const QVector<Client*> clients = clients_;
    for (const Client* client : clients)
        client->socket->abort();
}

FaceSearchSim::Client* FaceSearchSim::find(const QTcpSocket* socket) {
    for (Client* client : qAsConst(clients_)) {
        if (client->socket == socket)
            return client;
    }
    return nullptr;
}

void FaceSearchSim::read(Client* client) {
    const QTcpSocket* socket = client->socket;
    client->received += client->socket->readAll();
    while (find(socket) != nullptr && takeRequest(client)) {
    }
}

bool FaceSearchSim::takeRequest(Client* client) {
    constexpr int kHead = 5;
    const QByteArray& received = client->received;
    if (received.size() < kHead)
        return false;
    const int kind = static_cast<uchar>(received.at(0));
    const quint32 length = lengthAt(received, 1);
    if (kind < face_message::FaceInfo || kind > face_message::FaceInfoAndImage ||
        length > kMaxRequest || (kind == face_message::KeyExchange && length != kKeyLength)) {
        refuse(client, "no request");
        return false;
    }
    const int end = kHead + static_cast<int>(length);
    if (received.size() < end)
        return false;
    const QByteArray payload = received.mid(kHead, static_cast<int>(length));
    client->received.remove(0, end);
    // Ciphers that do nothing make every request empty; there is nothing to answer.
    if (length == 0) {
        qCInfo(simFaceLog, "an empty request of kind %d", kind);
        return true;
    }
    if (const char* fault = faultOf(kind, payload)) {
        refuse(client, fault);
        return false;
    }
    qCInfo(simFaceLog, "a request of kind %d with %u bytes", kind, length);
    emit requested(kind, payload);
    handle(client, kind, payload);
    return true;
}

void FaceSearchSim::refuse(Client* client, const char* why) {
    qCWarning(simFaceLog, "the client has sent %s and is cut off", why);
    client->socket->abort();
}

// --- Answers -------------------------------------------------------------------------------

void FaceSearchSim::handle(Client* client, int kind, const QByteArray& payload) {
    QByteArray answered(kSecretLength, 'k');
    if (kind == face_message::FaceImage) {
        const auto request = recordOf<FaceImageRequest>(payload);
        FaceRequestHeader header{};
        header.type = request.type;
        header.requestId = request.requestId;
        FaceInfoRecord asked{};
        for (const FaceInfoRecord& person : qAsConst(people_)) {
            if (std::memcmp(person.personId, request.personId, sizeof request.personId) == 0)
                asked = person;
        }
        std::memcpy(asked.personId, request.personId, sizeof request.personId);
        header.time = request.time;
        answered = answer(kind, asked, header);
    } else if (kind != face_message::KeyExchange) {
        answered = answer(kind, people_.value(match_), recordOf<FaceRequestHeader>(payload));
    }
    const QPointer<QTcpSocket> socket(client->socket);
    QTimer::singleShot(delay_, this, [this, socket, kind, answered] {
        if (socket)
            send(socket, kind, answered);
    });
}

QByteArray FaceSearchSim::answer(int kind, const FaceInfoRecord& person,
                                 const FaceRequestHeader& request) {
    FaceInfoRecord info = person;
    info.type = request.type;
    info.requestId = request.requestId;
    std::memcpy(info.sent, reinterpret_cast<const char*>(&request) + 5, sizeof info.sent);
    if (kind == face_message::FaceInfo)
        return bytesOf(info);
    // Somebody who is not known has no picture.
    const int look = static_cast<int>(qHash(textOf(person.personId)) % 1000);
    const QByteArray image = person.name[0] == '\0' ? QByteArray() : portrait::jpeg(look);
    const auto imageSize = static_cast<quint32>(image.size());
    if (kind == face_message::FaceImage) {
        FaceImageHead head{};
        head.type = request.type;
        head.requestId = request.requestId;
        std::memcpy(head.personId, person.personId, sizeof head.personId);
        head.time = request.time;
        head.imageSize = imageSize;
        return bytesOf(head) + image;
    }
    FaceInfoAndImageHead head{};
    std::memcpy(head.information, &info, sizeof info);
    head.imageSize = imageSize;
    return bytesOf(head) + image;
}

void FaceSearchSim::send(QTcpSocket* socket, int kind, const QByteArray& whole) {
    QByteArray payload = whole;
    auto length = static_cast<quint32>(payload.size());
    const Fault fault = std::exchange(fault_, Fault::None);
    switch (fault) {
        case Fault::None:
            break;
        case Fault::Silent:
            return;
        case Fault::Empty:
            payload.clear();
            length = 0;
            break;
        case Fault::Short:
            payload.chop(payload.size() / 2);
            length = static_cast<quint32>(payload.size());
            break;
        case Fault::Huge:
            length = 0xffffffff;
            break;
        case Fault::Cut:
            payload.chop(payload.size() / 2);
            break;
        case Fault::Unending:
            if (kind == face_message::FaceInfo)
                std::fill(payload.begin() + offsetof(FaceInfoRecord, personId), payload.end(), 'W');
            break;
        case Fault::Image:
            if (kind == face_message::FaceImage)
                payload[int{offsetof(FaceImageHead, imageSize)} + 3] = '\x7f';
            else if (kind == face_message::FaceInfoAndImage)
                payload[int{offsetof(FaceInfoAndImageHead, imageSize)} + 3] = '\x7f';
            break;
        case Fault::Kind:
            kind = 9;
            break;
    }
    QByteArray message(1, static_cast<char>(kind));
    message += bytesOf(length) + payload;
    Client* client = find(socket);
    if (client == nullptr)
        return;
    if (pace_ > 0 && fault != Fault::Cut) {
        client->trickling += message;
        trickle_.start(pace_);
        return;
    }
    socket->write(message);
    if (fault == Fault::Cut)
        socket->disconnectFromHost();
}

void FaceSearchSim::trickle() {
    bool more = false;
    for (Client* client : qAsConst(clients_)) {
        client->socket->write(client->trickling.left(1));
        client->trickling.remove(0, 1);
        more = more || !client->trickling.isEmpty();
    }
    if (!more)
        trickle_.stop();
}
