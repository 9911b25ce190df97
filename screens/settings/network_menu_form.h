#pragma once

#include "screens/common/device_request.h"
#include "screens/common/form_screen.h"
#include "screens/common/screen_popup.h"
#include "ui_network_menu_form.h"

/// The network menu. Its two rows have the controller try a connection, one at a time.
class NetworkMenuForm : public FormScreen<Ui::NetworkMenuForm> {
    Q_OBJECT

 public:
    NetworkMenuForm(QWidget* parent, const QString& title);

    void windowInEvent() override;
    void windowOutEvent() override;
    void deviceAnswer(const DeviceMessage& message) override;

    /// Takes how the test @p kind of command::link_test has gone; 0: reached.
    void GetTestResult(unsigned char result, unsigned char kind);

 protected:
    void built() override;
    void scriptsApplied() override;

 private:
    struct Test {
        ListRow* row;
        QWidget* spinner;
    };

    Test testOf(unsigned char kind) const;
    void test(unsigned char kind);
    /// Shows the outcome of the test that runs, if any, by its key.
    void endTest(const char* key);

    DeviceRequest request_;
    ScreenPopup popup_;
    unsigned char running_ = 0;  // kind, 0 for none
};
