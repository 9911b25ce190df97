#include "sim/service/service_sim.h"

ServiceSim::ServiceSim(quint16 port, quint16 controlPort, const TerminalAddress& terminal,
                       QObject* parent)
    : QObject(parent),
      calls_(port, nullptr),
      orders_(terminal, calls_.port()),
      control_([this](const QString& line) { return execute(line); }, nullptr) {
    onWord("quit", "end the simulated service", [this](const QString&) {
        emit quitRequested();
        return done();
    });
    onWord("restart", "start the simulated service anew, when it was built again",
           [this](const QString&) {
               emit restartRequested();
               return done();
           });
    words_.add(orders_);
    words_.add(calls_);
    words_.add(*this);
    connect(&calls_, &ServiceCalls::called, this, &ServiceSim::called);
    control_.listen(controlPort);
}

QString ServiceSim::errorString() const {
    return port() == 0 ? calls_.errorString() : control_.errorString();
}
