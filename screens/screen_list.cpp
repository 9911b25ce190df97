#include "app/screen_factory.h"
#include "app/window_registry.h"
#include "screens/recognize/stay_window.h"

void createScreens(QWidget* parent, WindowRegistry& registry) {
    registry.append(new StayWindow(parent, QStringLiteral("stayWindow")));
}
