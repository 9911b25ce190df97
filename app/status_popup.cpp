#include "app/status_popup.h"

#include <utility>

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

StatusPopup::StatusPopup(std::function<ScriptHandler::Script(const QString&)> scripts,
                         QWidget* window)
    : QObject(window), scripts_(std::move(scripts)), window_(window) {
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

    auto* dialog = new DialogForm(window_, kAutoClose);
    dialog->setObjectName(QStringLiteral("statusPopup"));
    dialog->setDeleteOnClose(true);
    dialog->setIcon(key == kNetworkFailed ? DialogForm::Icon::Error : DialogForm::Icon::Info);
    dialog->setText(scripts_(QLatin1String(text)));
    dialog->setOkText(scripts_(QStringLiteral("TopMenu_OK")));
    dialog->show();
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
