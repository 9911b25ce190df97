#include "bench/scenario/showing.h"

#include <QCoreApplication>

#include "app/main_window.h"
#include "app/window_form.h"
#include "bench/scenario/painting.h"
#include "ui/dialog_overlay.h"

void showScreen(MainWindow& window, const QString& title) {
    WindowForm* const screen = window.getWindow(title);
    if (window.getActivateWindowForm() == screen)
        return;
    const PaintWatch watch(screen);
    window.session().open();  // which the door's screens end
    // A step of something that has not been begun leads back at once.
    if (window.changeWindow(title) == 0)
        watch.waitWhileVisible();
    QCoreApplication::processEvents();
    // What a screen has to say would lie over the next ones.
    for (DialogOverlay* dialog : window.findChildren<DialogOverlay*>())
        dialog->hide();
}
