#include "screens/settings/setup_menu.h"

#include "app/window_shell.h"
#include "base/clock.h"
#include "base/same_secret.h"
#include "link/command_code.h"
#include "link/command_parameters.h"
#include "ui/combo.h"
#include "ui/input_field.h"
#include "ui/label_button.h"
#include "ui/plus_minus.h"
#include "ui/text_line.h"
#include "ui/toggle.h"

namespace {

enum Popup {
    kBadNumber = 1,
    kPasswordLength,
    kPasswordsDiffer,
    kPasswordNeeded,
    kAskRemovePassword,
    kBadDate,
    kBadTime,
    kSettingTime,
    kTimeSet,
    kTimeNotSet,
};
constexpr auto Error = ScreenText::Error;
constexpr ScreenText kTexts[] = {
    {kBadNumber, "Error_DeviceNumber", Error},
    {kPasswordLength, "Error_PasswordLength", Error},
    {kPasswordsDiffer, "Error_PasswordsDiffer", Error},
    {kPasswordNeeded, "Error_PasswordNeeded", Error},
    {kAskRemovePassword, "ListItem_AskRemovePassword", ScreenText::Danger,
     "ListItem_AnybodyCanChange"},
    {kBadDate, "ListItem_CheckInputDate", Error},
    {kBadTime, "ListItem_CheckInputTime", Error},
    {kSettingTime, "ListItem_SettingTime", ScreenText::Wait},
    {kTimeSet, "ListItem_TimeSet", ScreenText::Pass},
    {kTimeNotSet, "Error_TimeNotSet", Error},
};

constexpr int kShortestPassword = 4;
constexpr int kFirstYear = 2000;
constexpr int kLastYear = 2099;

const QString kDateFormat = QStringLiteral("yyyy-MM-dd");
const QString kTimeFormat = QStringLiteral("hh:mm");

std::uint8_t byte(int value) {
    return static_cast<std::uint8_t>(value);
}

}  // namespace

SetupMenu::SetupMenu(QWidget* parent, const QString& title)
    : FormScreen(parent, title), clock_(this), minute_(this) {
    minute_.setSingleShot(true);
    connect(&minute_, &QTimer::timeout, this, &SetupMenu::showTime);
    connect(&clock_, &DeviceRequest::answered, this, [this] {
        openClock(false);
        showTime();
        popup().show(kTimeSet, kPopupSeconds);
    });
    connect(&clock_, &DeviceRequest::failed, this, [this](DeviceRequest::Failure why) {
        const bool down = why == DeviceRequest::Failure::LinkDown;
        popup().show(down ? int(NoConnection) : kTimeNotSet, kPopupSeconds);
    });
}

// --- What is on it -------------------------------------------------------------------------

void SetupMenu::built() {
    popup().add(kTexts);
    slice(&_gui_menu_::setup, command::SaveDeviceSetup, command::DeviceSetupSaved,
          command::save::SetupAtTerminal);
    bindTerminal();
    bindPassword();
    bindAccess();
    bindDoor();
}

void SetupMenu::bindTerminal() {
    bind(ui_->deviceNumberField, &SetupBlock::deviceNumber, Range{0, 0xFFFFFFFF}, kBadNumber);
    ui_->languageCombo->setItems(shell()->getLanguageList());
    bind(ui_->languageCombo, &SetupBlock::language);
    bind(ui_->timeFromServiceToggle, &SetupBlock::syncTime, kInverted);
    connect(ui_->timeFromServiceToggle, &Toggle::currentIndexChanged, this,
            [this] { valuesShown(); });
    connect(ui_->clockRow, &WidgetButton::touched, this,
            [this] { openClock(ui_->dateRow->isHidden()); });
    connect(ui_->setTimeButton, &WidgetButton::touched, this, &SetupMenu::setTimeTouch);
}

void SetupMenu::bindAccess() {
    bind(ui_->operationCombo, &SetupBlock::operation);
    bind(ui_->readerToggle, &SetupBlock::readerMode);
    bind(ui_->serviceToggle, &SetupBlock::serviceMode);
    bind(ui_->authMethodCombo, &SetupBlock::authMethod);
    bind(ui_->visitorCallToggle, &SetupBlock::visitorCall, kInverted);
    bind(ui_->quickRegistrationToggle, &SetupBlock::quickRegistration, kInverted);
    bind(ui_->demoToggle, &SetupBlock::demo, kInverted);
}

void SetupMenu::bindDoor() {
    bind(ui_->relayToggle, &SetupBlock::relayUse, kInverted);
    bind(ui_->relayTypeToggle, &SetupBlock::relayType);
    bind(ui_->doorOpenTime, &SetupBlock::doorOpenDuration);
    bind(ui_->exitButtonToggle, &SetupBlock::buttonUse, kInverted);
    bind(ui_->tamperToggle, &SetupBlock::tamperSwitch, kInverted);
    bind(ui_->alarmCombo, &SetupBlock::alarmMode);
}

// --- Coming and going ----------------------------------------------------------------------

void SetupMenu::windowInEvent() {
    removing_ = false;
    FormScreen::windowInEvent();
    openClock(false);
}

void SetupMenu::windowOutEvent() {
    FormScreen::windowOutEvent();
    ui_->passwordField->clear();
    ui_->repeatField->clear();
}

void SetupMenu::prevButtonTouch() {
    if (shell()->menuRecord().commissioned != 0)
        FormScreen::prevButtonTouch();
}

void SetupMenu::valuesShown() {
    const _gui_menu_ record = shell()->menuRecord();
    const bool commissioned = record.commissioned != 0;
    ui_->topBar->setBackVisible(commissioned);
    ui_->commissionLine->setVisible(!commissioned);
    for (ListRow* row : {ui_->setupRegistRow, ui_->setupDefaultRow})
        row->setEnabled(commissioned);

    const bool byService = ui_->timeFromServiceToggle->currentIndex() == 0;
    ui_->clockRow->setEnabled(!byService);
    showTime();
    if (byService)
        openClock(false);
    showPassword(record);
}

// --- Password ------------------------------------------------------------------------------

void SetupMenu::bindPassword() {
    bindInput(
        ui_->passwordField,
        [this](const _gui_menu_&) {
            ui_->passwordField->clear();
            removing_ = false;
        },
        [this](_gui_menu_& record) { return storePassword(record); });
    bindInput(
        ui_->repeatField, [this](const _gui_menu_&) { ui_->repeatField->clear(); },
        [](_gui_menu_&) { return 0; });
    connect(ui_->removePasswordRow, &WidgetButton::touched, this, &SetupMenu::removePasswordTouch);
}

int SetupMenu::storePassword(_gui_menu_& record) const {
    const QString password = ui_->passwordField->text();
    if (password.isEmpty() && ui_->repeatField->text().isEmpty()) {
        if (removing_)
            setFieldText(record.setup.adminPassword, QString());
        const bool none = fieldText(record.setup.adminPassword).isEmpty();
        return none && record.commissioned == 0 ? kPasswordNeeded : 0;
    }
    if (password.size() < kShortestPassword)
        return kPasswordLength;
    setFieldText(record.setup.adminPassword, password);
    return 0;
}

bool SetupMenu::validate(_gui_menu_&) {
    if (sameSecret(ui_->passwordField->text(), ui_->repeatField->text()))
        return true;
    fault(kPasswordsDiffer, {ui_->passwordField, ui_->repeatField});
    return false;
}

void SetupMenu::removePasswordTouch() {
    popup().ask(kAskRemovePassword, [this] {
        for (InputField* input : {ui_->passwordField, ui_->repeatField})
            reload(input);
        touched(ui_->passwordField);
        removing_ = true;
        showPassword(shell()->menuRecord());
    });
}

void SetupMenu::showPassword(const _gui_menu_& record) {
    const bool set = !fieldText(record.setup.adminPassword).isEmpty();
    ui_->passwordField->setPlaceholderKey(set ? QStringLiteral("ListItem_PasswordSet")
                                              : QStringLiteral("ListItem_PasswordNone"));
    const auto lookup = [](const QString& key) { return shell()->getScript(key); };
    ui_->passwordField->applyScripts(lookup);
    // A terminal that is being set up needs one.
    ui_->removePasswordRow->setEnabled(set && !removing_ && record.commissioned != 0);
    ui_->removePasswordRow->setValue(removing_ ? lookup(QStringLiteral("ListItem_WhenSaved")).script
                                               : QString());
}

// --- Clock ---------------------------------------------------------------------------------

void SetupMenu::openClock(bool open) {
    if (open && ui_->dateRow->isHidden()) {
        ui_->dateField->setText(Clock::now().toString(kDateFormat));
        ui_->timeField->setText(Clock::now().toString(kTimeFormat));
    }
    for (ListRow* row : {ui_->dateRow, ui_->timeRow, ui_->setTimeRow}) {
        row->setVisible(open);
        row->setFaulty(false);
    }
    ui_->clockRow->setSelected(open);
}

void SetupMenu::showTime() {
    constexpr int kMinute = 60000;  // milliseconds
    const QDateTime now = Clock::now();
    ui_->clockRow->setValue(now.toString(kDateFormat + QLatin1Char(' ') + kTimeFormat));
    minute_.start(kMinute - now.time().msecsSinceStartOfDay() % kMinute);
}

void SetupMenu::setTimeTouch() {
    shell()->removeTouchKey();
    const QDate date = QDate::fromString(ui_->dateField->text(), kDateFormat);
    const QTime time = QTime::fromString(ui_->timeField->text(), kTimeFormat);
    const bool isDate = date.isValid() && date.year() >= kFirstYear && date.year() <= kLastYear;
    if (!isDate || !time.isValid()) {
        fault(isDate ? kBadTime : kBadDate, {isDate ? ui_->timeField : ui_->dateField});
        return;
    }
    const ClockTime clock{byte(date.year() - kFirstYear),
                          byte(date.month()),
                          byte(date.day()),
                          byte(time.hour()),
                          byte(time.minute()),
                          0};
    if (!clock_.sendRecord(command::SetClock, command::save::Settings, 0, clock,
                           {command::TimeNotice}, kAnswerTime)) {
        popup().show(NoConnection, kPopupSeconds);
        return;
    }
    popup().wait(kSettingTime);
}

// --- Saving --------------------------------------------------------------------------------

void SetupMenu::holdBack(_gui_menu_& stored, const _gui_menu_& former) {
    stored.setup.language = former.setup.language;
}

void SetupMenu::confirmed(_gui_menu_& record) {
    record.commissioned = 1;
    if (record.setup.language != shell()->menuRecord().setup.language)
        shell()->changeLanguage(record.setup.language);
}
