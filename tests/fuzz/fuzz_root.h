#pragma once

#include <QLoggingCategory>
#include <cstdint>
#include <cstdlib>

#include "tests/support/test_root.h"

/// Ends the process as a finding unless @p good.
inline void demand(bool good) {
    if (!good)
        std::abort();
}

/// What a target got, not copied.
inline QByteArray bytesOf(const std::uint8_t* bytes, std::size_t size) {
    return QByteArray::fromRawData(reinterpret_cast<const char*>(bytes), static_cast<int>(size));
}

/// What a target does with an input: its first byte, which mostly chooses, and the rest of it.
void take(std::uint8_t first, const QByteArray& rest);

/// Silence: what is logged about each input would bury what the fuzzer says.
inline void keepSilent() {
    qInstallMessageHandler([](QtMsgType, const QMessageLogContext&, const QString&) {});
}

/// A root for a target that reads and writes files, and silence.
class FuzzRoot : public TestRoot {
 public:
    FuzzRoot() { keepSilent(); }
};
