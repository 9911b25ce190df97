#include "screens/users/user_search_user_info.h"

#include <QSignalBlocker>

#include "app/screen_titles.h"
#include "app/window_shell.h"
#include "link/command_code.h"
#include "link/command_parameters.h"
#include "link/device_message.h"
#include "link/record_values.h"
#include "screens/users/customer_number.h"
#include "screens/users/unstored_offer.h"
#include "screens/users/user_record.h"
#include "screens/users/user_search_step.h"

namespace {

namespace asks = command::asks;

constexpr int kAnswerTime = 10000;  // milliseconds
constexpr int kReasonTime = 1000;   // for 2930, which comes with 2973
constexpr int kQuestionSeconds = 5;
constexpr float kNameSize = 36;  // pixels
constexpr int kMethods = AuthMethod::FaceAndId + 1;

enum Text {
    kChanged = 44,
    kNotChanged = 45,
    kEnterEleven = 50,
    kSaving = 51,
    kDeleted = 117,
    kNotDeleted = 118,
    kAskDelete = 119,
    kTimeout = 120,
    kAskChange = 201,
    kDeleting,
    kNotKept,
    kNoConnection,
    kNoAnswer,
};

constexpr ScreenText kTexts[] = {
    {kChanged, "ListItem_SuccessfullyChanged", ScreenText::Pass},
    {kNotChanged, "ListItem_FailedChange", ScreenText::Error},
    {kEnterEleven, "Error_EnterEleven", ScreenText::Error},
    {kSaving, "ListItem_SavingConfiguring", ScreenText::Wait},
    {102, "ListItem_UnregisteredID", ScreenText::Error},
    {106, "ListItem_UnregisteredCard", ScreenText::Error},
    {110, "ListItem_UnregisteredCard", ScreenText::Error},
    {114, "ListItem_UnregisteredCard", ScreenText::Error},
    {116, "ListItem_UnregisteredFace", ScreenText::Error},
    {kDeleted, "ListItem_UserDeleted", ScreenText::Pass},
    {kNotDeleted, "ListItem_FailedDeleted", ScreenText::Error},
    {kAskDelete, "ListItem_DeleteUser", ScreenText::Danger},
    {kTimeout, "Error_InputTimeout", ScreenText::Error},
    {kAskChange, "ListItem_InformationWillBePermanentlyDeleted", ScreenText::Danger},
    {kDeleting, "ListItem_Deleting", ScreenText::Wait},
    {kNotKept, "Error_UserNotKept", ScreenText::Error},
    {kNoConnection, "ListItem_NoController", ScreenText::Error},
    {kNoAnswer, "Error_NoResponse", ScreenText::Error},
};

/// By command::asks, how was searched.
constexpr int kUnregistered[] = {116, 114, 106, 102, 110};

/// By UserOrigin.
constexpr const char* kOrigins[] = {"ListItem_OriginTerminal", "ListItem_OriginService",
                                    "ListItem_OriginKiosk"};

unsigned char askedFor(unsigned char searchType) {
    switch (searchType) {
        case command::search::ByCard:
            return asks::ForCard;
        case command::search::ById:
            return asks::ForId;
        default:
            return asks::ForFace;
    }
}

}  // namespace

UserSearch_userInfo::UserSearch_userInfo(QWidget* parent, const QString& title)
    : FormScreen(parent, title), popup_(this, kTexts), request_(this), reason_(this) {
    popup_.add(UnstoredOffer::kTexts);
    connect(&request_, &DeviceRequest::answered, this, &UserSearch_userInfo::answered);
    connect(&request_, &DeviceRequest::failed, this, &UserSearch_userInfo::failed);
}

void UserSearch_userInfo::built() {
    connect(ui_->topBar, &TopBar::forwardTouched, this, &UserSearch_userInfo::saveButtonTouch);
    connect(ui_->topBar, &TopBar::deleteTouched, this, &UserSearch_userInfo::deleteButtonTouch);
    connect(ui_->faceRow, &WidgetButton::touched, this, [this] { enrolMissing(true); });
    connect(ui_->cardRow, &WidgetButton::touched, this, [this] { enrolMissing(false); });
    showNobody();
}

// --- Coming and going ----------------------------------------------------------------------

void UserSearch_userInfo::windowInEvent() {
    FormScreen::windowInEvent();
    ui_->list->rewind();
    if (param().canConvert<UserSearchOutcome>()) {
        const auto outcome = param().value<UserSearchOutcome>();
        GetUserInfo(outcome.result, outcome.type,
                    static_cast<unsigned short>(outcome.record.size()), outcome.record.constData());
    } else if (!storeKept()) {
        showNobody();
    }
}

void UserSearch_userInfo::windowOutEvent() {
    FormScreen::windowOutEvent();
    end();
    // Nobody's data is to flash up before the next one's.
    showNobody();
}

void UserSearch_userInfo::prevButtonTouch() {
    if (task_ == Task::None)
        FormScreen::prevButtonTouch();
}

// --- Who is shown --------------------------------------------------------------------------

void UserSearch_userInfo::GetUserInfo(unsigned char result, unsigned char type,
                                      unsigned short length, const char* record) {
    DeviceMessage message;
    message.length = length;
    message.payload = record;
    const auto user = message.record<_gui_user_>();
    if (result == command::answer::Done && user) {
        unstored_ = false;
        show(*user);
        return;
    }
    showNobody();
    if (result == asks::NothingTagged) {
        GetUserDelInfo(result, askedFor(type), 0, nullptr);
        return;
    }
    // The controller says why; if it does not, the way of searching tells.
    reason_.disconnect(this);
    connect(&reason_, &DeviceRequest::answered, this, [this](const DeviceMessage& why) {
        GetUserDelInfo(why.p1, why.p2, why.length, why.payload);
    });
    connect(&reason_, &DeviceRequest::failed, this,
            [this, type] { GetUserDelInfo(asks::NotRegistered, askedFor(type), 0, nullptr); });
    reason_.await({command::UserDeleted}, kReasonTime);
}

void UserSearch_userInfo::GetUserDelInfo(unsigned char result, unsigned char type, unsigned short,
                                         const char*) {
    if (result == asks::ToDelete) {
        if (user_)
            deleteButtonTouch();
        return;
    }
    if (task_ != Task::None || (result != asks::NothingTagged && type >= std::size(kUnregistered)))
        return;
    const int number = result == asks::NothingTagged ? kTimeout : kUnregistered[type];
    popup_.showThen(number, [this] {
        if (!user_)
            prevButtonTouch();
    });
}

void UserSearch_userInfo::show(const _gui_user_& user) {
    user_ = user;
    ui_->thumbnail->setPhoto(UserRecord::picture(user, ui_->thumbnail->size()));
    showName(UserRecord::shown(fieldText(user.name)));
    ui_->numberField->setText(UserRecord::ParsingPhoneNum(fieldText(user.customerId)));
    ui_->methodCombo->setCurrentIndex(qMin<int>(user.authMethod, kMethods - 1));
    ui_->rightsToggle->setCurrentIndex(user.rights == UserRights::InOutOnly ? 1 : 0);
    showCredential(ui_->faceRow, user.facePresent != 0);
    showCredential(ui_->cardRow, user.cardPresent != 0);
    ui_->destinationRow->setVisible(user.level == UserLevel::Visitor);
    ui_->levelChip->show();
    setUsable(true);
    showTexts();
}

void UserSearch_userInfo::showName(const QString& name) {
    ScriptHandler::Script script;
    script.size = kNameSize;
    script.fontFamily = shell()->getScriptFontFamily();
    script.script = name;
    ui_->nameLine->setScript(script);
}

void UserSearch_userInfo::showNobody() {
    user_.reset();
    unstored_ = false;
    if (!ui_)
        return;
    ui_->thumbnail->setPhoto({});
    showName(QString());
    ui_->levelChip->hide();
    ui_->numberField->clear();
    ui_->methodCombo->setCurrentIndex(0);
    ui_->rightsToggle->setCurrentIndex(0);
    for (ListRow* row : {ui_->faceRow, ui_->cardRow, ui_->registeredRow, ui_->originRow}) {
        row->setMark(ListRow::NoMark);
        row->setPositive(false);
        row->setValueKey(QString());
        row->setValue(QString());
    }
    ui_->destinationRow->hide();
    setUsable(false);
}

void UserSearch_userInfo::setUsable(bool usable) {
    for (QWidget* part : std::initializer_list<QWidget*>{
             ui_->numberField, ui_->methodCombo, ui_->rightsToggle,
             ui_->topBar->button(TopBar::Forward), ui_->topBar->button(TopBar::Delete)})
        part->setEnabled(usable);
}

void UserSearch_userInfo::showCredential(ListRow* row, bool present) {
    row->setPositive(present);
    row->setMark(present ? ListRow::NoMark : ListRow::Chevron);
    row->setValueKey(present ? QStringLiteral("Registered") : QStringLiteral("NoRegistered"));
}

void UserSearch_userInfo::showTexts() {
    if (!user_)
        return;
    ui_->levelChip->setTextKey(QLatin1String(UserRecord::levelKey(user_->level)));
    ui_->originRow->setValueKey(
        QLatin1String(kOrigins[qMin<int>(user_->origin, UserOrigin::Kiosk)]));
    const auto lookup = [](const QString& key) { return shell()->getScript(key); };
    for (Scripted* part :
         {static_cast<Scripted*>(ui_->levelChip), static_cast<Scripted*>(ui_->originRow),
          static_cast<Scripted*>(ui_->faceRow), static_cast<Scripted*>(ui_->cardRow)})
        part->applyScripts(lookup);
    ui_->destinationRow->setEnteredValue(UserRecord::shown(fieldText(user_->destination)));
    ui_->registeredRow->setValue(UserRecord::shown(fieldText(user_->registrationTime)).left(16));
}

// --- Changing ------------------------------------------------------------------------------

std::optional<_gui_user_> UserSearch_userInfo::edited() {
    shell()->removeTouchKey();
    const QString number = ui_->numberField->text();
    if (!CustomerNumber::isValid(number)) {
        ShowPopup(kEnterEleven, ScreenPopup::kSeconds);
        return {};
    }
    _gui_user_ user = *user_;
    setFieldText(user.customerId, number);
    user.authMethod = static_cast<std::uint8_t>(ui_->methodCombo->currentIndex());
    user.rights =
        ui_->rightsToggle->currentIndex() == 0 ? UserRights::AlarmAndInOut : UserRights::InOutOnly;
    return user;
}

void UserSearch_userInfo::saveButtonTouch() {
    if (!user_ || task_ != Task::None)
        return;
    auto user = edited();
    if (!user)
        return;
    const bool destroys = UserRecord::dropUnused(*user);
    if (destroys && !unstored_)
        popup_.ask(
            kAskChange, [this, user] { deleteAndStore(*user); }, {}, {}, kQuestionSeconds);
    else
        store(*user);
}

bool UserSearch_userInfo::begin(Task task) {
    if (!shell()->linkUp() || !shell()->canChangeWindow()) {
        if (unstored_)
            offerStore();
        else
            ShowPopup(kNoConnection, ScreenPopup::kSeconds);
        return false;
    }
    task_ = task;
    late_.clear();
    // What has been begun is to be seen to its end.
    shell()->setChangeWindowFlag(false);
    popup_.wait(task == Task::Delete ? kDeleting : kSaving);
    return true;
}

void UserSearch_userInfo::deleteAndStore(const _gui_user_& user) {
    if (!user_ || task_ != Task::None)
        return;
    if (!shell()->linkUp()) {
        ShowPopup(kNoConnection, ScreenPopup::kSeconds);
        return;
    }
    // One at a time is out of the store.
    if (UnstoredUser::keepsAnother(user)) {
        offerStore();
        return;
    }
    if (!UnstoredUser::keep(user)) {
        ShowPopup(kNotKept, ScreenPopup::kSeconds);
        return;
    }
    if (!begin(Task::DeleteAndStore)) {
        UnstoredUser::forget(user);
        return;
    }
    sent_ = user;
    if (!request_.send(command::DeleteUser, command::ordered::AtTerminal, 0,
                       QByteArray(user.userId, sizeof user.userId), {command::UserDeleteResult},
                       kAnswerTime)) {
        UnstoredUser::forget(user);
        end();
        ShowPopup(kNoConnection, ScreenPopup::kSeconds);
    }
}

void UserSearch_userInfo::store(const _gui_user_& user) {
    if (task_ == Task::None) {
        // What is tried again may have been changed since.
        if (unstored_ && !UnstoredUser::keep(user)) {
            ShowPopup(kNotKept, ScreenPopup::kSeconds);
            return;
        }
        if (!begin(Task::Store))
            return;
    }
    task_ = Task::Store;
    sent_ = user;
    if (!request_.sendRecord(command::ChangeUser, 0, 0, user, {command::UserChanged}, kAnswerTime))
        failed(DeviceRequest::Failure::LinkDown);
}

bool UserSearch_userInfo::storeKept() {
    const auto kept = UnstoredUser::kept();
    if (!kept)
        return false;
    unstored_ = true;
    show(*kept);
    store(*kept);
    return true;
}

void UserSearch_userInfo::answered(const DeviceMessage& message) {
    const bool done = message.p1 == command::answer::Done;
    if (task_ == Task::DeleteAndStore) {
        if (done) {
            unstored_ = true;
            store(sent_);
            return;
        }
        // Nothing has been deleted.
        UnstoredUser::forget(sent_);
        ShowUserChangeResult(false);
    } else if (task_ == Task::Delete) {
        // Whoever is not there is deleted as well.
        ShowDeleteResult(done || unstored_ ? Deleted : NotDeleted);
    } else {
        ShowUserChangeResult(done);
    }
}

void UserSearch_userInfo::failed(DeviceRequest::Failure why) {
    const Task task = task_;
    end();
    // Without an answer the user may be deleted or not.
    if (task == Task::DeleteAndStore)
        unstored_ = true;
    if (task == Task::Delete && why == DeviceRequest::Failure::TimedOut && user_)
        late_ = fieldText(user_->userId);
    if (unstored_) {
        if (task != Task::Delete)
            show(sent_);
        offerStore();
        return;
    }
    ShowPopup(why == DeviceRequest::Failure::LinkDown ? kNoConnection : kNoAnswer,
              ScreenPopup::kSeconds);
}

void UserSearch_userInfo::end() {
    request_.cancel();
    if (task_ != Task::None)
        shell()->setChangeWindowFlag(true);
    task_ = Task::None;
    popup_.endWait();
}

void UserSearch_userInfo::ShowUserChangeResult(bool changed) {
    const bool stored = task_ == Task::Store && changed;
    end();
    if (stored) {
        UnstoredUser::forget(sent_);
        unstored_ = false;
        show(sent_);
    }
    if (unstored_) {
        show(sent_);
        offerStore();
    } else {
        ShowPopup(changed ? kChanged : kNotChanged, ScreenPopup::kSeconds);
    }
}

void UserSearch_userInfo::offerStore() {
    shell()->PlaySound(command::sound::Error);
    popup_.ask(UnstoredOffer::kQuestion, [this] {
        if (unstored_)
            saveButtonTouch();
        else
            storeKept();
    });
}

// --- Deleting ------------------------------------------------------------------------------

void UserSearch_userInfo::deleteButtonTouch() {
    if (!user_ || task_ != Task::None)
        return;
    shell()->removeTouchKey();
    popup_.ask(
        kAskDelete,
        [this] {
            if (!user_ || !begin(Task::Delete))
                return;
            if (!request_.send(command::DeleteUser, command::ordered::AtTerminal, 0,
                               QByteArray(user_->userId, sizeof user_->userId),
                               {command::UserDeleteResult}, kAnswerTime))
                failed(DeviceRequest::Failure::LinkDown);
        },
        {}, {}, kQuestionSeconds);
}

void UserSearch_userInfo::ShowDeleteResult(int result) {
    end();
    if (result == Deleted) {
        if (user_)
            UnstoredUser::forget(*user_);
        showNobody();
        // The management service asks the terminal how many there are.
        shell()->SendCommand(command::AskUserCounts, 0, 0);
        popup_.showThen(kDeleted, [this] { prevButtonTouch(); });
    } else if (result == NotDeleted) {
        ShowPopup(kNotDeleted, ScreenPopup::kSeconds);
    }
}

// --- Completing ----------------------------------------------------------------------------

void UserSearch_userInfo::enrolMissing(bool face) {
    if (!user_ || task_ != Task::None || (face ? user_->facePresent : user_->cardPresent) != 0)
        return;
    const auto method = static_cast<std::uint8_t>(ui_->methodCombo->currentIndex());
    const bool wanted = face ? UserRecord::usesFace(method) : UserRecord::usesCard(method);
    moveEnrollMode(wanted ? method : static_cast<int>(AuthMethod::FaceOrCard));
}

void UserSearch_userInfo::moveEnrollMode(int mode) {
    if (!user_)
        return;
    if (unstored_) {
        offerStore();
        return;
    }
    auto user = edited();
    if (!user)
        return;
    user->authMethod = static_cast<std::uint8_t>(mode);
    user->enrolMode = static_cast<std::uint8_t>(mode);
    shell()->SetGuiUser(&*user);
    shell()->changeWindow(screen_title::kEnrolQualification, mode);
}

// --- Frames and popups ---------------------------------------------------------------------

void UserSearch_userInfo::deviceAnswer(const DeviceMessage& message) {
    const bool isReason = message.command == command::UserDeleted;
    const bool awaited = isReason ? reason_.isWaiting() : task_ != Task::None;
    FormScreen::deviceAnswer(message);
    if (awaited)
        return;
    if (isReason)
        GetUserDelInfo(message.p1, message.p2, message.length, message.payload);
    else if (message.command == command::UserDeleteResult && !unstored_ && isOfShown())
        ShowDeleteResult(message.p1 == command::answer::Done ? Deleted : NotDeleted);
}

/// An answer that came too late is about whom it was awaited for.
bool UserSearch_userInfo::isOfShown() {
    const QString late = std::exchange(late_, QString());
    return late.isEmpty() || (user_ && fieldText(user_->userId) == late);
}

void UserSearch_userInfo::ShowPopup(int code, int seconds) {
    if (code == kAskDelete)
        deleteButtonTouch();
    else if (!popup_.show(code, seconds))
        popup_.wait(code);
}
