#pragma once

#include <QtGlobal>

/// How far what was sent over the device link has come.
struct LinkProgress {
    quint32 connection = 0;  // number of the present connection; 0 when there is none
    qint64 accepted = 0;     // bytes sent on it
    qint64 left = 0;         // those of them that have left the process

    bool idle() const { return connection != 0 && left == accepted; }
};
