#include "screens/common/titled_form.h"

#include "app/main_window.h"
#include "ui/top_bar.h"
#include "ui/widget_button.h"

void TitledForm::connectForm(TopBar* bar) {
    backTarget_ = bar->property("backTarget").toString();
    connect(bar, &TopBar::backTouched, this, &TitledForm::prevButtonTouch);
    connect(bar, &TopBar::homeTouched, this, &TitledForm::homeButtonTouch);
    const QString forwardTarget = bar->property("forwardTarget").toString();
    if (!forwardTarget.isEmpty())
        connect(bar, &TopBar::forwardTouched, this,
                [forwardTarget] { MainWindow::getMainWindow()->changeWindow(forwardTarget); });
    const QList<WidgetButton*> buttons = findChildren<WidgetButton*>();
    for (WidgetButton* button : buttons) {
        const QString target = button->property("target").toString();
        if (!target.isEmpty())
            connect(button, &WidgetButton::touched, this,
                    [target] { MainWindow::getMainWindow()->changeWindow(target); });
    }
}

void TitledForm::prevButtonTouch() {
    MainWindow::getMainWindow()->changeWindow(backTarget_);
}

void TitledForm::homeButtonTouch() {
    MainWindow::getMainWindow()->changeWindow(QStringLiteral("stayWindow"));
}
