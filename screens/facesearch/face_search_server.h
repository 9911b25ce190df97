#pragma once

#include <QString>
#include <optional>
#include <string>

/// Where a face-search server is.
struct FaceSearchServer {
    static constexpr int kPort = 5000;

    std::string address;  // dotted IPv4
    int port = kPort;

    /// From "address" or "address:port"; none when that is not what @p text holds.
    static std::optional<FaceSearchServer> fromText(const QString& text);
    /// The one that the terminal was told of, if any. A name that makes no sense is logged.
    static std::optional<FaceSearchServer> configured();
};
