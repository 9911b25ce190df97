#include "app/status_popup.h"

#include "ui/dialog_form.h"

namespace {

constexpr int kAutoClose = 5000;  // milliseconds

const char* textKey(int key) {
    switch (key) {
        case StatusPopup::kDownloadingSettings:
            return "Info_DownloadingSettingsManager";
        case StatusPopup::kNetworkFailed:
            return "ListItem_NetworkConfigurationFailed";
        default:
            return nullptr;
    }
}

}  // namespace

StatusPopup::StatusPopup(QWidget* window) : QObject(window), window_(window) {
    timer_.setSingleShot(true);
    connect(&timer_, &QTimer::timeout, this, &StatusPopup::PopupTimeout);
}

void StatusPopup::show(int key, int seconds) {
    const char* text = textKey(key);
    if (text == nullptr)
        return;
    if (seconds > 0)
        timer_.start(seconds * 1000);
    else
        timer_.stop();
    key_ = key;
    seconds_ = seconds;

    if (dialog_)
        dialog_->hide();
    dialog_ = new DialogForm(window_, kAutoClose);
    dialog_->setObjectName(QStringLiteral("statusPopup"));
    dialog_->setDeleteOnClose(true);
    dialog_->setPassing(key == kDownloadingSettings);
    dialog_->setIcon(key == kNetworkFailed ? DialogForm::Icon::Error : DialogForm::Icon::Info);
    dialog_->setTextKey(QLatin1String(text));
    dialog_->show();
    shown_ = true;
}

void StatusPopup::close() {
    if (shown_)
        PopupTimeout();
}

void StatusPopup::PopupTimeout() {
    timer_.stop();
    key_ = 0;
    seconds_ = 0;
    shown_ = false;
}
