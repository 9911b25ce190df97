#pragma once

#include <QByteArray>
#include <QVector>

/// Starts the running program anew, in place and with the same arguments: its process ID, standard
/// input and output and environment stay. For a simulator that has been built again.
class Relaunch {
 public:
    /// What the event loop is to end with when the program is to start anew.
    static constexpr int kStatus = 250;

    /// To be made before anything takes its arguments out of @p argv.
    Relaunch(int argc, char* const argv[]);

    /// The end of main(), once every object is gone: returns @p status, or does not return.
    int finish(int status) const;

 private:
    QVector<QByteArray> arguments_;
};
