#include "base/device_paths.h"

#include <QDir>

namespace {

struct Environment {
    QString root;
    quint16 linkPort;
    quint16 restPort;
    QString faceSearch;
};

quint16 portFromEnvironment(const char* name, quint16 standard) {
    bool ok = false;
    const uint port = qEnvironmentVariable(name).toUInt(&ok);
    return ok && port >= 1 && port <= 65535 ? static_cast<quint16>(port) : standard;
}

QString rootFromEnvironment() {
    const QString given = qEnvironmentVariable("ZEL_ROOT");
    if (given.isEmpty())
        return {};
    // Symbolic links are made with these paths, so a relative root would point elsewhere.
    const QString absolute = QDir::cleanPath(QDir(given).absolutePath());
    return absolute == QLatin1String("/") ? QString() : absolute;
}

const Environment& environment() {
    static const Environment read{
        rootFromEnvironment(), portFromEnvironment("ZEL_LINK_PORT", 15150),
        portFromEnvironment("ZEL_REST_PORT", 80), qEnvironmentVariable("ZEL_FACE_SEARCH")};
    return read;
}

}  // namespace

namespace DevicePaths {

QString root() {
    return environment().root;
}

QString at(const QString& devicePath) {
    return root() + devicePath;
}

quint16 linkPort() {
    return environment().linkPort;
}

quint16 restPort() {
    return environment().restPort;
}

QString faceSearch() {
    return environment().faceSearch;
}

}  // namespace DevicePaths
