#include "screens/recognize/in_out_ok_form.h"

#include "app/main_window.h"

void InOutOkForm::setEvent(const WorkState::Attendance& event) {
    confirm(MainWindow::getMainWindow()->getScript(QLatin1String(event.done)));
}
