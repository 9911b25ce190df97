#include "tools/gallery/gallery_states.h"

#include "tools/gallery/area_states.h"
#include "tools/gallery/stage.h"

void GalleryState::show(Stage& stage) const {
    stage.open(title);
    if (arrange != nullptr)
        arrange(stage);
}

QVector<GalleryState> galleryStates(const MainWindow& window) {
    const AreaStates areas[] = {shellStates(),      doorStates(),     usbStates(),
                                usersStates(),      settingsStates(), deviceStates(),
                                enrolmentStates(),  peopleStates(),   factoryStates(),
                                facesearchStates(), logsStates()};
    QVector<GalleryState> states;
    int number = 0;
    for (const WindowForm* screen : window.windowList()) {
        const QString title = screen->getTitle();
        const QString file =
            QStringLiteral("%1-%2").arg(++number, 2, 10, QLatin1Char('0')).arg(title);
        states.append({file, title, nullptr});
        for (const AreaStates& area : areas) {
            for (const AreaState& state : area) {
                if (title == QLatin1String(state.title))
                    states.append({file + QLatin1Char('-') + QLatin1String(state.name), title,
                                   state.arrange});
            }
        }
    }
    return states;
}
