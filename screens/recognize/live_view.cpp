#include "screens/recognize/live_view.h"

#include <QPaintEvent>
#include <QPainter>
#include <algorithm>

#include "app/screen_titles.h"
#include "app/window_shell.h"
#include "base/clock.h"
#include "base/device_paths.h"
#include "link/command_code.h"
#include "link/command_parameters.h"
#include "link/device_message.h"
#include "link/record_values.h"
#include "screens/recognize/booting_form.h"
#include "screens/recognize/meal_count_form.h"
#include "screens/recognize/recognition.h"
#include "screens/recognize/recognize_window.h"
#include "screens/recognize/stay_window.h"
#include "screens/recognize/work_state.h"
#include "ui/dialog_form.h"
#include "ui/notice_strip.h"
#include "ui/paint.h"
#include "ui/theme.h"
#include "ui_live_view.h"

namespace {

/// Seconds that the live view stays without a face when the settings do not say.
constexpr int kLiveTime = 20;
constexpr int kDoorDialogTime = 10000;  // milliseconds

constexpr char kPictureSheet[] = "#noti_layer{background-image: url(%1);};";
constexpr char kPlainSheet[] =
    "#noti_layer{background : qlineargradient(x1:0, y1:0, x2:1, y2:0, stop:0 %1, "
    "stop:1 %2);}";

}  // namespace

LiveView::LiveView(QWidget* parent, const QString& title) : WindowForm(parent, title) {
    liveTimer_.setSingleShot(true);
    connect(&liveTimer_, &QTimer::timeout, this, &LiveView::liveEnd);
}

LiveView::~LiveView() = default;

void LiveView::createForm() {
    // The camera's picture must show through.
    setAutoFillBackground(false);
    ui_ = std::make_unique<Ui::LiveView>();
    ui_->setupUi(this);
    QPalette veil = ui_->strip->palette();
    veil.setColor(QPalette::Window, Theme::color(Theme::kVeil));
    ui_->strip->setPalette(veil);
    ui_->strip->setAutoFillBackground(true);
    showBanner(false);
    connect(ui_->noti_layer, &WidgetButton::touched, this, &LiveView::openMealCounts);
    connect(ui_->callButton, &WidgetButton::touched, this, &LiveView::doorRing);
    connect(ui_->keypadButton, &WidgetButton::touched, this, &LiveView::inputSub);
    connect(ui_->enrollButton, &WidgetButton::touched, this, &LiveView::enrollButtonTouch);
    connect(ui_->menuButton, &WidgetButton::touched, this, &LiveView::homeButtonTouch);

    doorDialog_ = new DialogForm(this, kDoorDialogTime);
    doorDialog_->setObjectName(QStringLiteral("doorDialog"));
    doorDialog_->setIcon(DialogForm::Icon::Info);
    watch(doorDialog_);
}

void LiveView::showEvent(QShowEvent* event) {
    WindowForm::showEvent(event);
    // Whatever screen was up before may have ended it.
    recognise();
    shell()->SendCommand(command::LivePicture, command::picture::Shown, 0);
    showSettings();
    // The result is to come at once when it comes.
    if (WindowForm* result = shell()->getWindow(screen_title::kResult))
        QTimer::singleShot(0, result, &WindowForm::ensureForm);
}

void LiveView::hideEvent(QHideEvent* event) {
    WindowForm::hideEvent(event);
    ui_->trackingBox->clear();
}

void LiveView::recognise() {
    if (!shell()->recognitionRuns())
        Recognition::start(*shell());
}

void LiveView::peersChanged() {
    // A controller that was away may have forgotten what it was told.
    recognise();
    showPeers();
}

void LiveView::showPeers() {
    ui_->peerSign->setPeers(*shell());
    placeReasons();
}

void LiveView::showSettings() {
    const _gui_menu_ settings = shell()->menuRecord();
    ui_->callButton->setVisible(settings.setup.visitorCall == 1);
    ui_->keypadButton->setVisible(settings.setup.authMethod == AuthMethod::FaceAndId);
    ui_->enrollButton->setVisible(settings.registration.on == 1);
    ui_->noti_layer->setTouchable(MealCountForm::isOffered(settings));
    workModeChanged();
    showPeers();
    setLiveShowTimerReset();
}

void LiveView::settingsChanged(const SettingsChange& change) {
    WindowForm::settingsChanged(change);
    showSettings();
}

void LiveView::workModeChanged() {
    updateWorkState(
        static_cast<int>(WorkState::shown(shell()->getWorkMode(), shell()->menuRecord())));
}

void LiveView::updateWorkState(int mode) {
    const auto workMode = static_cast<WorkMode>(mode);
    const auto banner =
        WorkState::banner(workMode, shell()->menuRecord(), Clock::now().date().dayOfWeek());
    if (!banner) {
        // Nothing but the door is in use then: there is nothing to tell.
        if (workMode == WorkMode::AccessOnly)
            showBanner(false);
        return;
    }
    const QString sheet =
        banner->picture != nullptr
            ? QString(QLatin1String(kPictureSheet))
                  .arg(DevicePaths::at(QLatin1String("/zel1/image/") +
                                       QLatin1String(banner->picture)))
            : QString::fromLatin1(kPlainSheet)
                  .arg(Theme::color(Theme::kAccentTint).name(), Theme::color(Theme::kBar).name());
    ui_->noti_layer->setGround(sheet);

    const auto script = [](const char* key) { return shell()->getScript(QLatin1String(key)); };
    if (banner->attendance == nullptr && banner->meal == nullptr) {
        ui_->noti_layer->setContent({}, script("Info_TimeNotiBar_NoService"), {});
    } else {
        const bool meal = banner->meal != nullptr;
        const QString word = script(meal ? banner->meal : banner->attendance->word).script;
        ScriptHandler::Script line = script("Arg_WorkModeLine");
        line.script = meal ? word : line.script.replace(QLatin1String("%1"), word);
        ScriptHandler::Script range = script("Info_TimeNotiBar");
        range.script.replace(QLatin1String("%1"), word);
        range.script += QLatin1Char(' ') + WorkState::rangeText(banner->range);
        ui_->noti_layer->setContent(meal ? QString() : QLatin1String(banner->attendance->icon),
                                    line, range);
    }
    showBanner(true);
}

void LiveView::showBanner(bool shown) {
    ui_->noti_layer->setVisible(shown);
    placeReasons();
}

void LiveView::placeReasons() {
    int top = 0;
    for (const QWidget* above :
         {static_cast<QWidget*>(ui_->noti_layer), static_cast<QWidget*>(ui_->peerSign)})
        if (!above->isHidden())
            top = above->geometry().bottom() + 1;
    ui_->trackingBox->setVisiblePart({0, top, width(), noticeTop() - top});
}

int LiveView::noticeTop() const {
    return ui_->strip->y() - NoticeStrip::kHeight;
}

void LiveView::deviceAnswer(const DeviceMessage& message) {
    switch (message.command) {
        case command::TrackingBox:
            if (const auto face = message.record<TrackedFace>())
                setTrackingBox(*face);
            break;
        case command::RecognitionFailed:
            // A face's failure comes with its box.
            if (message.p2 == command::failure::ByCard)
                ui_->trackingBox->showCardFailure(message.p1);
            setLiveShowTimerReset();
            break;
        case command::ShowLiveView:
            setLiveShowTimerReset();
            break;
        default:
            break;
    }
}

void LiveView::setTrackingBox(const TrackedFace& face) {
    ui_->trackingBox->setFace(face);
    if (face.state != FaceState::NoFace)
        setLiveShowTimerReset();
}

void LiveView::setLiveShowTimerReset() {
    const auto dialogs = findChildren<DialogOverlay*>(QString(), Qt::FindDirectChildrenOnly);
    const bool open = std::any_of(dialogs.begin(), dialogs.end(),
                                  [](const DialogOverlay* dialog) { return dialog->isOpen(); });
    const int seconds = shell()->menuRecord().liveSeconds;
    if (open)
        liveTimer_.stop();
    else
        liveTimer_.start((seconds > 0 ? seconds : kLiveTime) * 1000);
}

void LiveView::watch(QWidget* dialog) {
    dialog->installEventFilter(this);
}

bool LiveView::eventFilter(QObject* watched, QEvent* event) {
    if (event->type() == QEvent::Show || event->type() == QEvent::Hide)
        setLiveShowTimerReset();
    return WindowForm::eventFilter(watched, event);
}

void LiveView::verified() {
    const AlarmMode alarm = shell()->getAlarmMode();
    auto* result = qobject_cast<RecognizeWindow*>(shell()->getWindow(screen_title::kResult));
    if (result != nullptr && (alarm == AlarmMode::Arm || alarm == AlarmMode::Disarm))
        result->setArmEvent(RecognizeWindow::EVENT_TYPE::Alarm, RecognizeWindow::ARM_BTN_TYPE::Ok,
                            alarm == AlarmMode::Arm ? ArmState::Armed : ArmState::Disarmed);
    if (shell()->getActivateWindowForm() == result || !shell()->canChangeWindow())
        return;
    const bool starting = qobject_cast<BootingForm*>(shell()->getActivateWindowForm()) != nullptr;
    // A card works at the standby screen too; the live view follows then.
    takeOver();
    // A terminal that has never been set up goes on with that, and every other with people.
    const bool setsUp =
        starting && shell()->getActivateWindowForm()->getTitle() == screen_title::kSetupMenu;
    shell()->changeWindow(screen_title::kResult,
                          setsUp ? QVariant(QString(screen_title::kSetupMenu)) : QVariant());
}

void LiveView::takeOver() {
    if (auto* start = qobject_cast<BootingForm*>(shell()->getActivateWindowForm()))
        start->bootEnd();
    if (auto* standby = qobject_cast<StayWindow*>(shell()->getActivateWindowForm()))
        standby->wake();
}

void LiveView::liveEnd() {
    if (shell()->changeWindow(screen_title::kStandby) == 0)
        shell()->SendCommand(command::CameraRun, command::camera::Off, 0);
    else
        setLiveShowTimerReset();
}

void LiveView::doorRing() {
    shell()->SendCommand(command::RecognitionKey, command::key::DoorRing, 0);
    doorDialog_->setTextKey(QStringLiteral("Dialog_VisitorDoorCalling"));
    doorDialog_->show();
}

void LiveView::openMealCounts() {
    watch(MealCountForm::open(this));
    setLiveShowTimerReset();
}

void LiveView::inputSub() {
    if (!shell()->canChangeWindow())
        return;
    Recognition::stop(*shell());
    shell()->changeWindow(screen_title::kNumberEntry);
}

void LiveView::enrollButtonTouch() {
    if (shell()->canChangeWindow())
        startEnrolment({});
}

void LiveView::enrolRequested() {
    if (!shell()->canChangeWindow())
        return;
    takeOver();
    // The service has said already who it is.
    _gui_user_ user;
    shell()->GetGuiUser(&user);
    startEnrolment(user);
}

void LiveView::startEnrolment(_gui_user_ user) {
    user.enrolMode = AuthMethod::FromLiveView;
    shell()->SetGuiUser(&user);
    shell()->SendCommand(command::LivePicture, command::picture::Shown, 0);
    shell()->SendCommand(command::RecognitionMode, command::recognition::Enrolment, 0);
    shell()->SendCommand(command::CameraRun, command::camera::Off, 0);
    shell()->SendCommand(command::CameraPictureStop, 0, 0);
    // The person enters no ID there; the screen is given one.
    if (shell()->enrolAtDoor(AuthMethod::FromLiveView) == 0)
        shell()->SendCommand(command::StartEnrolment, 0, 0);
}

void LiveView::homeButtonTouch() {
    if (!shell()->canChangeWindow())
        return;
    // Whoever works in the menu is not to be recognised meanwhile.
    Recognition::stop(*shell());
    shell()->changeWindow(screen_title::kMenu);
}

void LiveView::mousePressEvent(QMouseEvent*) {
    setLiveShowTimerReset();
}

void LiveView::paintEvent(QPaintEvent* event) {
    if (WindowShell::onPanel())
        return;
    QPainter painter(this);
    painter.setClipRegion(event->region());
    Paint::cameraPicture(&painter, QPoint());
}
