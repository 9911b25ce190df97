#include "screens/common/titled_form.h"

#include <algorithm>

#include "app/screen_titles.h"
#include "app/window_shell.h"
#include "screens/common/device_request.h"
#include "ui/top_bar.h"
#include "ui/widget_button.h"

namespace {

QList<DeviceRequest*> requestsOf(const TitledForm* screen) {
    return screen->findChildren<DeviceRequest*>(QString(), Qt::FindDirectChildrenOnly);
}

}  // namespace

void TitledForm::windowOutEvent() {
    WindowForm::windowOutEvent();
    const auto requests = requestsOf(this);
    for (DeviceRequest* request : requests)
        request->cancel();
}

void TitledForm::deviceAnswer(const DeviceMessage& message) {
    const auto requests = requestsOf(this);
    for (DeviceRequest* request : requests) {
        if (request->take(message))
            return;
    }
}

void TitledForm::peersChanged() {
    if (shell()->linkUp())
        return;
    const auto requests = requestsOf(this);
    for (DeviceRequest* request : requests)
        request->linkLost();
}

bool TitledForm::isWaiting() const {
    const auto requests = requestsOf(this);
    return std::any_of(requests.begin(), requests.end(),
                       [](const DeviceRequest* request) { return request->isWaiting(); });
}

void TitledForm::connectForm(TopBar* bar) {
    backTarget_ = bar->property("backTarget").toString();
    connect(bar, &TopBar::backTouched, this, &TitledForm::prevButtonTouch);
    connect(bar, &TopBar::homeTouched, this, &TitledForm::homeButtonTouch);
    const QString forwardTarget = bar->property("forwardTarget").toString();
    if (!forwardTarget.isEmpty())
        connect(bar, &TopBar::forwardTouched, this,
                [forwardTarget] { shell()->changeWindow(forwardTarget); });
    const QList<WidgetButton*> buttons = findChildren<WidgetButton*>();
    for (WidgetButton* button : buttons) {
        const QString target = button->property("target").toString();
        if (!target.isEmpty())
            connect(button, &WidgetButton::touched, this,
                    [target] { shell()->changeWindow(target); });
    }
}

void TitledForm::prevButtonTouch() {
    shell()->changeWindow(backTarget_);
}

void TitledForm::homeButtonTouch() {
    shell()->changeWindow(screen_title::kStandby);
}
