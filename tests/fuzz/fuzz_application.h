#pragma once

#include <QGuiApplication>

#include "fuzz_root.h"

/// What draws needs an application, if without a screen.
class OffscreenApplication {
 public:
    OffscreenApplication() {
        static int argc = 0;
        qputenv("QT_QPA_PLATFORM", "offscreen");
        // The thread's own go before anything that Qt has made for all threads meanwhile.
        static thread_local const QGuiApplication application(argc, nullptr);
    }
};
