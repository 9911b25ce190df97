#include "screens/facesearch/face_search_server.h"

#include <arpa/inet.h>

#include "base/device_paths.h"
#include "screens/facesearch/fsv_output.h"

std::optional<FaceSearchServer> FaceSearchServer::fromText(const QString& text) {
    const int colon = text.indexOf(QLatin1Char(':'));
    FaceSearchServer server;
    server.address = text.left(colon).toStdString();
    bool ok = true;
    if (colon >= 0)
        server.port = text.mid(colon + 1).toUShort(&ok);
    in_addr ignored{};
    if (!ok || server.port == 0 || ::inet_pton(AF_INET, server.address.c_str(), &ignored) != 1)
        return std::nullopt;
    return server;
}

std::optional<FaceSearchServer> FaceSearchServer::configured() {
    const QString text = DevicePaths::faceSearch();
    if (text.isEmpty())
        return std::nullopt;
    auto server = fromText(text);
    if (!server)
        qCWarning(faceSearchLog, "\"%s\" names no face-search server", qUtf8Printable(text));
    return server;
}
