#pragma once

#include <time.h>

#include <QProcess>
#include <QString>
#include <QStringList>

/// A program of this build, running from construction to destruction with the environment of this
/// process.
class Program {
 public:
    Program(const char* name, const QStringList& arguments);
    ~Program();

    /// Milliseconds from the start to the first painted frame, or -1 when there was none within ten
    /// seconds. Only for programs that first_frame.cpp is linked into.
    double firstFrame();
    /// What follows @p mark on the next line of its standard output that begins with it; null when
    /// there is none within ten seconds.
    QByteArray lineAfter(const QByteArray& mark);
    /// Lets the program run for @p milliseconds; false when it has ended meanwhile.
    bool runFor(int milliseconds);
    /// Resident memory in MB, -1 when the program has ended.
    double residentMemory() const;
    /// CPU time of all its threads so far, in seconds; -1 when the program has ended.
    double cpuTime() const;
    /// CPU time of its first thread so far, in milliseconds.
    double mainThreadTime() const;
    /// Its threads and open files.
    int threads() const { return countOf("task"); }
    int descriptors() const { return countOf("fd"); }

 private:
    int countOf(const char* folder) const;

    QProcess process_;
    double started_ = 0;  // CLOCK_MONOTONIC, milliseconds
};

/// Resident memory in MB of the process @p pid ("self" for this one), -1 when there is none.
double residentMemory(const QString& pid);

/// Bytes that this process has allocated and not given back.
double allocatedMemory();

/// What @p clock reads, in milliseconds.
double clockTime(clockid_t clock);

/// A TCP port of loopback that is free now.
quint16 freePort();

/// Runs the event loop for @p milliseconds.
void runEvents(int milliseconds);
