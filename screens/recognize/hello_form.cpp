#include "screens/recognize/hello_form.h"

#include "app/window_form.h"
#include "app/window_shell.h"

void HelloForm::welcome() {
    confirm(WindowForm::shell()->getScript(QStringLiteral("Info_Hello")));
}

void HelloForm::refuse(bool nextMeal) {
    const QString key =
        nextMeal ? QStringLiteral("Info_ComeForNextMeal") : QStringLiteral("Info_AskAdmin");
    tell(QStringLiteral("cross.png"), WindowForm::shell()->getScript(key));
}
