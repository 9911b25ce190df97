#include "screens/users/enrol_step.h"

#include "app/administrator_session.h"
#include "app/screen_titles.h"
#include "app/window_shell.h"
#include "link/command_code.h"
#include "link/command_parameters.h"

void EnrolStep::prevButtonTouch() {
    // The way of authentication is the administrator's to choose.
    const bool chosen = shell()->enrolmentReturnTitle() == screen_title::kUserMenu;
    if (AdministratorSession::isEnrolmentStep(backTarget()) ||
        (chosen && backTarget() == screen_title::kEnrolMenu))
        TitledForm::prevButtonTouch();
    else
        leave();
}

void EnrolStep::homeButtonTouch() {
    leave();
}

void EnrolStep::leave() {
    if (!shell()->canChangeWindow())
        return;
    shell()->SendCommand(command::RecognitionMode, command::recognition::Off, 0);
    shell()->SendCommand(command::CameraRun, command::camera::Off, 0);
    shell()->changeWindow(shell()->enrolmentReturnTitle());
}
