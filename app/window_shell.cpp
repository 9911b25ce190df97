#include "app/window_shell.h"

#include <QGuiApplication>

bool WindowShell::onPanel() {
    return QGuiApplication::platformName() == QLatin1String("eglfs");
}
