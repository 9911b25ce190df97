#include "screens/settings/network_menu_form.h"

#include <utility>

#include "app/window_shell.h"
#include "link/command_code.h"
#include "link/command_parameters.h"
#include "link/device_message.h"
#include "ui/list_row.h"
#include "ui/spinner.h"

namespace {

using command::link_test::Ddns;
using command::link_test::Server;

constexpr int kAnswerTime = 10000;  // milliseconds
constexpr int kPopupSeconds = 3;

enum Popup { kNoController = 1 };
constexpr ScreenText kTexts[] = {{kNoController, "ListItem_NoController", ScreenText::Error}};

constexpr char kReached[] = "ListItem_Reached";
constexpr char kNotReached[] = "ListItem_NotReached";
constexpr char kNoAnswer[] = "ListItem_NoAnswer";

}  // namespace

NetworkMenuForm::NetworkMenuForm(QWidget* parent, const QString& title)
    : FormScreen(parent, title), request_(this), popup_(this, kTexts) {
    connect(&request_, &DeviceRequest::answered, this,
            [this](const DeviceMessage& message) { GetTestResult(message.p1, message.p2); });
    connect(&request_, &DeviceRequest::failed, this, [this](DeviceRequest::Failure why) {
        endTest(kNoAnswer);
        if (why == DeviceRequest::Failure::LinkDown)
            popup_.show(kNoController, kPopupSeconds);
    });
}

void NetworkMenuForm::built() {
    connect(ui_->testServerRow, &WidgetButton::touched, this, [this] { test(Server); });
    connect(ui_->testDdnsRow, &WidgetButton::touched, this, [this] { test(Ddns); });
}

NetworkMenuForm::Test NetworkMenuForm::testOf(unsigned char kind) const {
    if (kind == Ddns)
        return {ui_->testDdnsRow, ui_->ddnsSpinner};
    return {ui_->testServerRow, ui_->serverSpinner};
}

void NetworkMenuForm::windowInEvent() {
    FormScreen::windowInEvent();
    for (const unsigned char kind : {Server, Ddns}) {
        testOf(kind).row->setValue(QString());
        testOf(kind).row->setValueKey(QString());
        testOf(kind).row->setPositive(false);
    }
}

void NetworkMenuForm::windowOutEvent() {
    FormScreen::windowOutEvent();
    endTest("");
}

void NetworkMenuForm::deviceAnswer(const DeviceMessage& message) {
    // One that has come too late for its own test is not about the other.
    if (message.command != command::LinkTested || message.p2 == running_)
        FormScreen::deviceAnswer(message);
}

void NetworkMenuForm::test(unsigned char kind) {
    if (running_ != 0)
        return;
    if (!request_.send(command::TestLink, kind, 0, {}, {command::LinkTested}, kAnswerTime)) {
        popup_.show(kNoController, kPopupSeconds);
        return;
    }
    running_ = kind;
    const Test started = testOf(kind);
    started.row->setValueKey(QString());
    started.row->setValue(QString());
    started.row->setPositive(false);
    started.spinner->show();
    for (ListRow* row : {ui_->testServerRow, ui_->testDdnsRow})
        row->setEnabled(row == started.row);
}

void NetworkMenuForm::GetTestResult(unsigned char result, unsigned char kind) {
    if (kind == running_)
        endTest(result == command::answer::Done ? kReached : kNotReached);
}

void NetworkMenuForm::endTest(const char* key) {
    const unsigned char kind = std::exchange(running_, 0);
    if (kind == 0)
        return;
    const Test ended = testOf(kind);
    ended.spinner->hide();
    ended.row->setValueKey(QLatin1String(key));
    ended.row->setPositive(key == kReached);
    for (ListRow* row : {ui_->testServerRow, ui_->testDdnsRow})
        row->setEnabled(true);
    scriptsApplied();
}

void NetworkMenuForm::scriptsApplied() {
    for (ListRow* row : {ui_->testServerRow, ui_->testDdnsRow}) {
        if (!row->valueKey().isEmpty())
            row->setValue(shell()->getScript(row->valueKey()).script);
    }
}
