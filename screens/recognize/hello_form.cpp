#include "screens/recognize/hello_form.h"

#include "app/main_window.h"
#include "link/record_values.h"

void HelloForm::welcome() {
    confirm(MainWindow::getMainWindow()->getScript(QStringLiteral("Info_Hello")));
}

void HelloForm::refuse(int result) {
    const QString key = result == Verdict::MealTaken ? QStringLiteral("Info_ComeForNextMeal")
                                                     : QStringLiteral("Info_AskAdmin");
    tell(QStringLiteral("cross.png"), MainWindow::getMainWindow()->getScript(key));
}
