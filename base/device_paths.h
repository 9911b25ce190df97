#pragma once

#include <QString>

/// Where things lie on the device.
///
/// Every absolute path and every shell command of the program passes through here, so that the
/// whole program can be run and tested under a folder of its own. On the terminal the root is
/// empty and paths and commands are used exactly as written. The four values are read once from
/// the environment (`ZEL_ROOT`, `ZEL_LINK_PORT`, `ZEL_REST_PORT`, `ZEL_FACE_SEARCH`), on first use;
/// all functions may be called from any thread.
namespace DevicePaths {

/// The folder that stands for "/" without a trailing slash, empty on the terminal.
QString root();

/// @p devicePath (absolute, as on the device) as a path of this machine.
QString at(const QString& devicePath);

/// TCP port of the device controller on the local host, 15150 unless moved.
quint16 linkPort();

/// TCP port that the REST server listens on, 80 unless moved.
quint16 restPort();

/// The external face-search server, "address" or "address:port", as it was given; empty for none.
QString faceSearch();

}  // namespace DevicePaths
