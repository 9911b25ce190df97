#include "screens/recognize/hello_form.h"

#include "app/main_window.h"

void HelloForm::welcome() {
    confirm(MainWindow::getMainWindow()->getScript(QStringLiteral("Info_Hello")));
}

void HelloForm::refuse(bool nextMeal) {
    const QString key =
        nextMeal ? QStringLiteral("Info_ComeForNextMeal") : QStringLiteral("Info_AskAdmin");
    tell(QStringLiteral("cross.png"), MainWindow::getMainWindow()->getScript(key));
}
