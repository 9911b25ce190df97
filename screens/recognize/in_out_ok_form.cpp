#include "screens/recognize/in_out_ok_form.h"

#include "app/window_form.h"
#include "app/window_shell.h"

void InOutOkForm::setEvent(const WorkState::Attendance& event) {
    confirm(WindowForm::shell()->getScript(QLatin1String(event.done)));
}
