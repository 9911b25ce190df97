#pragma once

#include <QJsonArray>
#include <QVector>

#include "screens/common/factory_test_form.h"
#include "screens/common/form_screen.h"
#include "screens/common/screen_popup.h"
#include "ui_factory_menu.h"

class TouchShield;

/// The factory tests, each with what has come of it since the terminal was started. As long as it
/// or one of the tests is up the controller is in factory mode.
class FactoryMenu : public FormScreen<Ui::FactoryMenu> {
    Q_OBJECT

 public:
    FactoryMenu(QWidget* parent, const QString& title);

    void windowInEvent() override;

 protected:
    void built() override;
    void scriptsApplied() override;

 private:
    struct Test {
        QString name;
        ListRow* row;
        FactoryTestForm* form;
    };

    void screenChanging(const QString& title);
    void linkChanged(bool up);
    void leave();
    void quitting();
    void keepResults();
    void sayNotWritten();
    void showResults();
    void restart();

    TouchShield* shield_ = nullptr;
    ScreenPopup popup_;
    QVector<Test> tests_;
    QJsonArray kept_;             // as they were written last
    bool inFactoryMode_ = false;  // as the controller is to be
    bool leavesLater_ = false;    // it could not be told
    bool notWritten_ = false;
};
