#pragma once

#include <QObject>

/// What the process needs from the C library before Qt is up. One instance exists as a static
/// object of the process.
class CAPI : public QObject {
    Q_OBJECT

 public:
    /// Sets the environment of the panel's display and touch input for the Qt platform plug-in,
    /// overwriting what is there; Qt's own -platform argument still wins. Always 0. To be called
    /// before the application object is made.
    int setEnv();

    /// Sleeps @p ms milliseconds, whatever signals arrive meanwhile; 0 only yields.
    void sleep(int ms);
};
