#include "sim/controller/controller_sim.h"

#include <QDir>
#include <QFile>
#include <QFileInfo>
#include <QJsonDocument>
#include <QLoggingCategory>
#include <QSaveFile>
#include <QTimer>

#include "sim/controller/subjects.h"

Q_LOGGING_CATEGORY(simLog, "zel.sim", QtInfoMsg)

namespace {

/// No state file of ours comes near this size; anything larger is not read.
constexpr qint64 kMaxStateFile = 1024 * 1024;

}  // namespace

ControllerSim::ControllerSim(quint16 linkPort, quint16 controlPort, const QString& dataFolder,
                             QObject* parent)
    : QObject(parent),
      link_(nullptr),
      control_([this](const QString& line) { return execute(line); }, nullptr),
      device_(link_, dataFolder, nullptr),
      trouble_(device_),
      subjects_(makeSubjects(device_)) {
    for (const auto& subject : subjects_) {
        for (const auto& [code, handler] : subject->requests())
            requests_[code].append(handler);
        words_.add(*subject);
    }
    words_.add(trouble_);
    loadState();

    connect(&device_, &Device::quitRequested, this, &ControllerSim::quitRequested);
    connect(&device_, &Device::restartRequested, this, &ControllerSim::restartRequested);
    connect(&device_, &Device::changed, this, &ControllerSim::changed);
    connect(&device_, &Device::changed, this, [this] {
        // One file for all that happens in one turn of the event loop.
        if (!storePending_)
            QTimer::singleShot(0, this, &ControllerSim::storeState);
        storePending_ = true;
    });
    connect(&link_, &TerminalLink::frameReceived, this,
            [this](quint16 code, quint8 p1, quint8 p2, const QByteArray& payload) {
                emit frameReceived(code, p1, p2, payload);
                handleFrame({code, p1, p2, payload});
            });

    if (!link_.listen(linkPort) || !control_.listen(controlPort))
        qCWarning(simLog, "cannot listen: %s", qUtf8Printable(errorString()));
}

ControllerSim::~ControllerSim() {
    if (storePending_)
        storeState();
}

QString ControllerSim::errorString() const {
    return link_.port() == 0 ? link_.errorString() : control_.errorString();
}

void ControllerSim::handleFrame(const Request& request) {
    trouble_.meet(request, [this](const Request& met) { carryOut(met); });
}

void ControllerSim::carryOut(const Request& request) {
    const QVector<Subject::RequestHandler> handlers = requests_.value(request.code);
    for (const Subject::RequestHandler& handler : handlers)
        handler(request);
}

QString ControllerSim::statePath() const {
    return device_.dataPath(QStringLiteral("sim/controller.json"));
}

void ControllerSim::loadState() {
    QFile file(statePath());
    if (!file.exists())
        return;
    QJsonParseError error{};
    QJsonDocument document;
    if (file.open(QIODevice::ReadOnly) && file.size() <= kMaxStateFile)
        document = QJsonDocument::fromJson(file.readAll(), &error);
    if (!document.isObject()) {
        qCWarning(simLog, "%s is broken, starting with the defaults", qUtf8Printable(statePath()));
        return;
    }
    for (const auto& subject : subjects_) {
        if (!subject->stateKey().isEmpty())
            subject->restore(document.object().value(subject->stateKey()).toObject());
    }
}

void ControllerSim::storeState() {
    storePending_ = false;
    QJsonObject state;
    for (const auto& subject : subjects_) {
        if (!subject->stateKey().isEmpty())
            state.insert(subject->stateKey(), subject->state());
    }
    QDir().mkpath(QFileInfo(statePath()).path());
    QSaveFile file(statePath());
    if (!file.open(QIODevice::WriteOnly) || file.write(QJsonDocument(state).toJson()) < 0 ||
        !file.commit())
        qCWarning(simLog, "state not stored: %s", qUtf8Printable(file.errorString()));
}
