#include "screens/common/screen_popup.h"

#include "app/main_window.h"
#include "link/command_parameters.h"

void ScreenPopup::show(const PopupText& text, int seconds) {
    MainWindow* shell = MainWindow::getMainWindow();
    if (dialog_ == nullptr) {
        dialog_ = new DialogForm(screen_);
        dialog_->setObjectName(QStringLiteral("screenPopup"));
    }
    dialog_->hide();
    dialog_->setIcon(text.icon);
    dialog_->setText(shell->getScript(QLatin1String(text.key)));
    dialog_->setOkText(shell->getScript(QStringLiteral("TopMenu_OK")));
    dialog_->setAutoClose(seconds * 1000);
    dialog_->show();
    if (text.icon == DialogForm::Icon::Error)
        shell->PlaySound(command::sound::Error);
}
