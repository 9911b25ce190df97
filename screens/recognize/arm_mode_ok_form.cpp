#include "screens/recognize/arm_mode_ok_form.h"

#include "app/window_form.h"
#include "app/window_shell.h"

void ArmModeOkForm::setState(ArmState state) {
    const bool armed = state == ArmState::Armed;
    tell(armed ? QStringLiteral("armed.png") : QStringLiteral("disarmed.png"),
         WindowForm::shell()->getScript(armed ? QStringLiteral("Info_Armed")
                                              : QStringLiteral("Info_Disarmed")));
}
