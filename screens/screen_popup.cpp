#include "screens/screen_popup.h"

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
    dialog_->setTextKey(QLatin1String(text.key));
    dialog_->setAutoClose(seconds * 1000);
    dialog_->show();
    if (text.icon == DialogForm::Icon::Error)
        shell->PlaySound(command::sound::Error);
}
