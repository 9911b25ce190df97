#include "screens/users/enrol_flow.h"

#include <algorithm>
#include <iterator>

#include "app/screen_titles.h"
#include "app/window_shell.h"
#include "link/command_code.h"
#include "link/command_parameters.h"
#include "link/record_values.h"

namespace {

using Step = EnrolFlow::Step;

/// A frame that is sent, without its payload; no code for none.
struct Frame {
    std::uint16_t code;
    std::uint8_t p1;
    std::uint8_t p2;
};

constexpr Frame kNone{0, 0, 0};

/// By step.
constexpr struct StepRow {
    QLatin1String title;
    Frame approach;  ///< before its screen comes up
    Frame start;     ///< begins its capture
    Frame abandon;   ///< breaks it off
    bool wayBack;
} kSteps[] = {
    {screen_title::kEnrolMenu, kNone, kNone, kNone, true},
    {screen_title::kEnrolQualification, kNone, kNone, kNone, true},
    {screen_title::kEnrolId, kNone, kNone, kNone, true},
    {screen_title::kDestination, kNone, kNone, kNone, true},
    {screen_title::kEnrolCard,
     kNone,
     {command::StartEnrolment, 0, 0},
     {command::AbandonCardTag, 0, 0},
     true},
    {screen_title::kEnrolCardAgain,
     kNone,
     {command::StartEnrolment, 0, 0},
     {command::AbandonCardTag, 0, 0},
     true},
    // Out of a capture of the face the only way is to cancel it.
    {screen_title::kEnrolFace,
     {command::CameraRun, command::camera::On, command::camera::ForEnrolment},
     {command::StartFaceCapture, 0, 0},
     {command::AbandonFaceEnrolment, 0, 0},
     false},
};

constexpr int kFew = EnrolFlow::LevelRow | EnrolFlow::RightsRow;
constexpr int kAll = kFew | EnrolFlow::GlassesRow;
constexpr int kMostSteps = 5;

/// By mode. The way is what an administrator sets on the first step; at the live view the
/// registration mode says what is captured, and only visitors have a destination.
constexpr struct ModeRow {
    int rows;  ///< of the qualification screen
    Step steps[kMostSteps];
    int count;
} kModes[] = {
    {kFew, {Step::Choice, Step::Qualification, Step::Number, Step::Card}, 4},
    {kAll, {Step::Choice, Step::Qualification, Step::Number, Step::Face}, 4},
    {kAll, {Step::Choice, Step::Qualification, Step::Number, Step::Card, Step::Face}, 5},
    {kAll, {Step::Choice, Step::Qualification, Step::Number, Step::Card, Step::Face}, 5},
    {kAll, {Step::Choice, Step::Qualification, Step::Number, Step::Face}, 4},
    {EnrolFlow::GlassesRow, {Step::Qualification, Step::Destination, Step::Card, Step::Face}, 4},
};

constexpr std::uint8_t bit(Step step) {
    return static_cast<std::uint8_t>(1U << step);
}

bool captures(Step step) {
    return kSteps[step].start.code != 0;
}

bool isCard(Step step) {
    return step == Step::Card || step == Step::CardAgain;
}

void send(WindowShell& shell, const Frame& frame) {
    if (frame.code != 0)
        shell.SendCommand(frame.code, frame.p1, frame.p2);
}

void stopCamera(WindowShell& shell) {
    shell.SendCommand(command::RecognitionMode, command::recognition::Off, 0);
    shell.SendCommand(command::CameraRun, command::camera::Off, 0);
}

}  // namespace

EnrolFlow EnrolFlow::begin(int mode, WindowShell& shell) {
    EnrolFlow flow;
    flow.running_ = true;
    flow.step_ = Qualification;
    flow.mode_ = mode >= 0 && mode < static_cast<int>(std::size(kModes)) ? mode : AuthMethod::Card;

    _gui_user_ user;
    shell.GetGuiUser(&user);
    user.enrolMode = static_cast<std::uint8_t>(flow.mode_);
    if (flow.mode_ == AuthMethod::FromLiveView) {
        const RegistrationBlock registration = shell.menuRecord().registration;
        flow.byService_ = user.origin == UserOrigin::Kiosk;
        // Whatever the service has of them, nothing has been captured here.
        user.cardPresent = 0;
        user.facePresent = 0;
        flow.method_ = registration.authMethod;
        user.authMethod =
            flow.method_ == AuthMethod::FaceOrCard ? AuthMethod::FaceOrCard : AuthMethod::Face;
        if (!flow.byService_)
            user.level = registration.userLevel == UserLevel::Visitor ? UserLevel::Visitor
                                                                      : UserLevel::General;
        flow.visitor_ = user.level == UserLevel::Visitor;
    } else {
        user.authMethod = static_cast<std::uint8_t>(flow.mode_);
        if (user.userId[0] != '\0') {
            constexpr std::uint8_t kBoth = bit(Card) | bit(Face);
            const int lacks =
                (user.cardPresent == 0 ? bit(Card) : 0) | (user.facePresent == 0 ? bit(Face) : 0);
            std::uint8_t wanted = 0;
            for (const Step step : kModes[flow.mode_].steps)
                wanted |= bit(step) & kBoth;
            // Whoever lacks nothing gets all of it anew.
            flow.lacks_ = (wanted & lacks) != 0 ? wanted & lacks : wanted;
        }
    }
    shell.SetGuiUser(&user);
    return flow;
}

EnrolFlow EnrolFlow::choice(int mode) {
    EnrolFlow flow;
    flow.mode_ = qBound<int>(AuthMethod::Card, mode, AuthMethod::FaceAndId);
    return flow;
}

EnrolFlow EnrolFlow::none(const QString& title) {
    EnrolFlow flow;
    flow.mode_ = AuthMethod::FaceOrCard;
    const auto* row = std::find_if(std::begin(kSteps), std::end(kSteps),
                                   [&title](const StepRow& one) { return one.title == title; });
    if (row != std::end(kSteps))
        flow.step_ = static_cast<Step>(row - std::begin(kSteps));
    // The two that come in no enrolment with all the others.
    if (flow.step_ == Destination) {
        flow.mode_ = AuthMethod::FromLiveView;
        flow.method_ = AuthMethod::FaceOrCard;
        flow.visitor_ = true;
    } else if (flow.step_ == CardAgain) {
        flow.lacks_ = bit(Card) | bit(Face);
    }
    return flow;
}

bool EnrolFlow::needsRegistrationMode() const {
    return running_ && mode_ == AuthMethod::FromLiveView && !byService_;
}

int EnrolFlow::rows() const {
    return kModes[mode_].rows;
}

QVector<EnrolFlow::Step> EnrolFlow::steps() const {
    QVector<Step> steps;
    const ModeRow& mode = kModes[mode_];
    for (int i = 0; i < mode.count; ++i) {
        const Step step = mode.steps[i];
        const bool atLiveView = mode_ == AuthMethod::FromLiveView;
        const bool wanted = step == Qualification        ? true
                            : isSupplement()             ? (lacks_ & bit(step)) != 0
                            : step == Destination        ? visitor_
                            : step == Card && atLiveView ? method_ == AuthMethod::FaceOrCard
                                                         : true;
        if (wanted)
            steps.append(step == Card && isSupplement() ? CardAgain : step);
    }
    return steps;
}

QString EnrolFlow::previousTitle() const {
    const int before = stepNumber() - 2;
    return before >= 0 && kSteps[step_].wayBack ? kSteps[steps().at(before)].title : QString();
}

bool EnrolFlow::goOn(WindowShell& shell) const {
    if (!hasNext() || !shell.canChangeWindow())
        return false;
    const Step next = steps().at(stepNumber());
    if (running_ && captures(next) && !captures(step_) && mode_ == AuthMethod::FromLiveView)
        shell.SendCommand(command::EnrolmentOption, method_, method_);
    // The live view has left the camera with the enrolment; a card needs none.
    if (step_ == Destination && isCard(next))
        stopCamera(shell);
    if (running_)
        send(shell, kSteps[next].approach);
    return show(next, shell);
}

bool EnrolFlow::goBack(WindowShell& shell) const {
    return !previousTitle().isEmpty() && shell.canChangeWindow() &&
           show(steps().at(stepNumber() - 2), shell);
}

bool EnrolFlow::show(Step step, WindowShell& shell) const {
    EnrolFlow there = *this;
    there.step_ = step;
    return shell.changeWindow(kSteps[step].title, QVariant::fromValue(there)) == 0;
}

bool EnrolFlow::startCapture(WindowShell& shell) const {
    const Frame& start = kSteps[step_].start;
    if (!running_ || start.code == 0)
        return false;
    if (step_ != Face)
        return shell.SendCommand(start.code, start.p1, start.p2);
    _gui_user_ user;
    shell.GetGuiUser(&user);
    return shell.SendRecord(start.code, start.p1, start.p2, user);
}

void EnrolFlow::abandonCapture(WindowShell& shell, std::uint8_t stage) const {
    Frame abandon = kSteps[step_].abandon;
    abandon.p1 = stage;
    send(shell, abandon);
}

void EnrolFlow::leave(WindowShell& shell) {
    if (!shell.canChangeWindow())
        return;
    stopCamera(shell);
    shell.changeWindow(shell.enrolmentReturnTitle());
}
