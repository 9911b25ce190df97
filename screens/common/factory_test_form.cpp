#include "screens/common/factory_test_form.h"

#include <QJsonArray>
#include <QLabel>
#include <QTimer>
#include <QVBoxLayout>
#include <algorithm>
#include <cmath>
#include <utility>

#include "app/window_shell.h"
#include "base/clock.h"
#include "link/command_parameters.h"
#include "ui/label_button.h"
#include "ui/scroll_list.h"
#include "ui/styler.h"
#include "ui/theme.h"
#include "ui/touch_shield.h"

namespace {

constexpr int kMargin = 16;
constexpr int kGap = 8;
constexpr int kHintGap = 16;
constexpr int kHintHeight = 72;
constexpr int kButtonHeight = 72;
constexpr int kButtonGap = 12;

bool byPerson(const FactoryStep& step) {
    return step.judgement == FactoryStep::ByPerson || step.judgement == FactoryStep::AlsoByPerson;
}

bool isGood(const FactoryStep& step, double value) {
    return step.judgement == FactoryStep::WhenSeen ? value > step.least && value < step.most
                                                   : value >= step.least && value <= step.most;
}

/// Without the blank.
QString unitOf(const FactoryStep& step) {
    return QString::fromUtf8(step.format).section(QLatin1Char(' '), 1);
}

/// The limits as they are read; empty for a value without a unit.
QString limitsOf(const FactoryStep& step) {
    const QString unit = unitOf(step);
    if (unit.isEmpty())
        return {};
    const auto number = [](double value) { return QString::number(value); };
    const QString range = std::isinf(step.least) ? QStringLiteral("< ") + number(step.most)
                          : std::isinf(step.most)
                              ? QStringLiteral("> ") + number(step.least)
                              : number(step.least) + QStringLiteral(" \u2013 ") + number(step.most);
    return range + QLatin1Char(' ') + unit;
}

QLatin1String wordOf(ListRow::Verdict verdict) {
    switch (verdict) {
        case ListRow::Verdict::Pass:
            return QLatin1String("pass");
        case ListRow::Verdict::Fail:
            return QLatin1String("fail");
        default:
            return QLatin1String("not run");
    }
}

}  // namespace

namespace factory_read {

std::optional<double> result(const DeviceMessage& message, const FactoryStep&) {
    return message.p1;
}

std::optional<double> resultOfOption(const DeviceMessage& message, const FactoryStep& step) {
    if (message.p2 != step.option)
        return std::nullopt;
    return message.p1;
}

std::optional<double> number(const DeviceMessage& message, const FactoryStep&) {
    return message.record<quint16>();
}

}  // namespace factory_read

FactoryTestForm::FactoryTestForm(QWidget* parent, const QString& title)
    : TitledForm(parent, title), timer_(new QTimer(this)) {
    timer_->setObjectName(QStringLiteral("stepTimer"));
    timer_->setSingleShot(true);
    connect(timer_, &QTimer::timeout, this, &FactoryTestForm::timeIsUp);
}

// --- What is on it -------------------------------------------------------------------------

void FactoryTestForm::makeRows(const FactoryStep* steps, int count) {
    steps_ = steps;
    found_.resize(count);
    list_ = new ScrollList(this);
    list_->setWidgetResizable(true);
    auto* content = new QWidget;
    layout_ = new QVBoxLayout(content);
    layout_->setContentsMargins(kMargin, kMargin, kMargin, kMargin);
    layout_->setSpacing(kGap);
    for (int i = 0; i < count; ++i) {
        auto* row = new ListRow(content);
        row->setObjectName(QStringLiteral("step%1").arg(i));
        row->setTextKey(QLatin1String(steps[i].labelKey));
        row->setNote(limitsOf(steps[i]));
        layout_->addWidget(row);
        rows_.append(row);
    }
    hint_ = new QLabel(content);
    hint_->setObjectName(QStringLiteral("hintLabel"));
    hint_->setWordWrap(true);
    hint_->setAlignment(Qt::AlignCenter);
    hint_->setFixedHeight(kHintHeight);
    // What lies below it is not to jump.
    QSizePolicy policy = hint_->sizePolicy();
    policy.setRetainSizeWhenHidden(true);
    hint_->setSizePolicy(policy);
    hint_->hide();
    if (std::any_of(steps, steps + count, [](const FactoryStep& step) { return step.hintKey; })) {
        layout_->addSpacing(kHintGap - kGap);
        layout_->addWidget(hint_);
    }
    layout_->addStretch();
    list_->setWidget(content);
    if (std::any_of(steps, steps + count, byPerson)) {
        fail_ = addJudgement("Button_FactoryFail", "failButton", 0, false);
        fail_->setRole(LabelButton::Delete);
        pass_ = addJudgement("Button_FactoryPass", "passButton", 1, true);
        pass_->setRole(LabelButton::Primary);
    }
    setAsked(-1);
    placeFoot();
    shield_ = new TouchShield(this);
}

LabelButton* FactoryTestForm::addJudgement(const char* textKey, const char* name, int column,
                                           bool passed) {
    constexpr int kWidth = (Theme::kScreenWidth - 2 * kMargin - kButtonGap) / 2;
    auto* button = new LabelButton(this);
    button->setObjectName(QLatin1String(name));
    button->setTextKey(QLatin1String(textKey));
    button->setGeometry(kMargin + column * (kWidth + kButtonGap),
                        Theme::kScreenHeight - kMargin - kButtonHeight, kWidth, kButtonHeight);
    connect(button, &LabelButton::touched, this, [this, passed] {
        if (asked_ >= 0)
            judge(asked_, passed);
    });
    return button;
}

LabelButton* FactoryTestForm::addAction(const char* textKey, const char* name, bool whileAsked) {
    actsWhileAsked_ = whileAsked;
    action_ = new LabelButton(this);
    action_->setObjectName(QLatin1String(name));
    action_->setTextKey(QLatin1String(textKey));
    placeFoot();
    return action_;
}

void FactoryTestForm::placeFoot() {
    int end = Theme::kScreenHeight;
    if (pass_ != nullptr)
        end -= kMargin + kButtonHeight;
    if (action_ != nullptr) {
        end -= (pass_ != nullptr ? kButtonGap : kMargin) + kButtonHeight;
        action_->setGeometry(kMargin, end, Theme::kScreenWidth - 2 * kMargin, kButtonHeight);
    }
    list_->setGeometry(0, Theme::kBarHeight, Theme::kScreenWidth, end - Theme::kBarHeight);
}

void FactoryTestForm::addContent(QWidget* content, int rows) {
    // Before the room that is left.
    layout_->insertWidget(rows >= 0 ? rows : layout_->count() - 1, content, 0, Qt::AlignHCenter);
}

void FactoryTestForm::shield() {
    shield_->raiseShield();
}

// --- Coming and going ----------------------------------------------------------------------

void FactoryTestForm::windowInEvent() {
    TitledForm::windowInEvent();
    for (int i = 0; i < rows_.size(); ++i) {
        found_[i] = {QJsonValue(QJsonValue::Undefined), false};
        rows_.at(i)->setVerdict(Verdict::NotRun);
        rows_.at(i)->setValue(QString());
        rows_.at(i)->setNote(limitsOf(steps_[i]));
    }
    list_->rewind();
    begun_ = ended_ = Clock::now();
    shield();
    start(0);
}

void FactoryTestForm::windowOutEvent() {
    TitledForm::windowOutEvent();
    stop();
    for (ListRow* row : qAsConst(rows_)) {
        if (row->verdict() == Verdict::Running)
            row->setVerdict(Verdict::NotRun);
    }
}

void FactoryTestForm::start(int step) {
    const FactoryStep& first = steps_[step];
    if (started_ != 0 && started_ != first.start)
        stop();
    const bool sent = shell()->SendCommand(first.start, command::factory::Start, first.option);
    // Behind another screen there is nothing to be shown, and nobody to wait.
    if (!isVisible())
        return;
    started_ = sent ? first.start : 0;
    first_ = step;
    answered_ = false;
    for (int i = step; i < endOfGroup(step); ++i)
        setVerdict(i, Verdict::Running);
    if (!sent) {
        failRunning();
        return;
    }
    showHint(first.hintKey);
    if (first.report != 0)
        timer_->start(first.judgement == FactoryStep::WhenSeen
                          ? qMin(first.milliseconds, int(FactoryStep::kAnswerTime))
                          : first.milliseconds);
    else if (first.judgement == FactoryStep::ByPerson && asksAtOnce())
        askPerson(step);
}

void FactoryTestForm::beginTime() {
    timer_->start(steps_[first_].milliseconds);
}

bool FactoryTestForm::stop() {
    timer_->stop();
    setAsked(-1);
    showHint(nullptr);
    const std::uint16_t started = std::exchange(started_, 0);
    if (started != 0 && !shell()->SendCommand(started, command::factory::Stop, 0))
        unstopped_ = started;
    return started != 0;
}

void FactoryTestForm::stopLate() {
    const std::uint16_t late = std::exchange(unstopped_, 0);
    // One that runs again is stopped in its turn.
    if (late != 0 && late != started_)
        shell()->SendCommand(late, command::factory::Stop, 0);
}

int FactoryTestForm::endOfGroup(int step) const {
    int end = step;
    while (end < rows_.size() && steps_[end].start == steps_[step].start &&
           steps_[end].option == steps_[step].option)
        ++end;
    return end;
}

void FactoryTestForm::startBehind(int step) {
    timer_->stop();
    showHint(nullptr);
    const int next = endOfGroup(step);
    if (next < rows_.size())
        start(next);
}

// --- Reports -------------------------------------------------------------------------------

void FactoryTestForm::deviceAnswer(const DeviceMessage& message) {
    TitledForm::deviceAnswer(message);
    for (int i = 0; isVisible() && i < rows_.size(); ++i) {
        const FactoryStep& step = steps_[i];
        // One that is late counts as well, as long as it can be seen.
        if (message.command != step.report || rows_.at(i)->verdict() == Verdict::NotRun)
            continue;
        const std::optional<double> value = step.read(message, step);
        if (!value)
            continue;
        if (isRunning(i) && !std::exchange(answered_, true) &&
            step.milliseconds > FactoryStep::kAnswerTime && step.judgement == FactoryStep::WhenSeen)
            timer_->start(step.milliseconds);
        take(i, *value, step.text != nullptr ? step.text(message) : QString());
    }
}

void FactoryTestForm::take(int step, double value, const QString& text) {
    const FactoryStep& rule = steps_[step];
    found_[step].value = rule.text != nullptr ? QJsonValue(text) : QJsonValue(value);
    if (rule.text != nullptr)
        rows_.at(step)->setNote(text);
    else if (rule.format != nullptr)
        rows_.at(step)->setValue(QString::asprintf(rule.format, value));

    const bool good = isGood(rule, value);
    const bool mayPass = isRunning(step) || !found_.at(step).spoilt;
    switch (rule.judgement) {
        case FactoryStep::WhenSeen:
            if (good)
                judge(step, true);
            break;
        case FactoryStep::ByFirstValue:
            found_[step].spoilt = found_.at(step).spoilt || !good;
            if (!good || mayPass)
                judge(step, good);
            break;
        case FactoryStep::AlsoByPerson:
            if (!good)
                judge(step, false);
            else if (isRunning(step))
                askPerson(step);
            break;
        case FactoryStep::ByPerson:
            break;
    }
}

void FactoryTestForm::judge(int step, bool passed) {
    const bool ran = isRunning(step);
    if (asked_ == step)
        setAsked(-1);
    setVerdict(step, passed ? Verdict::Pass : Verdict::Fail);
    if (!ran || !goesOnByItself())
        return;
    for (int i = first_; i < endOfGroup(first_); ++i) {
        if (isRunning(i))
            return;
    }
    startBehind(first_);
}

void FactoryTestForm::timeIsUp() {
    for (int i = first_; i < endOfGroup(first_); ++i) {
        if (isRunning(i))
            setVerdict(i, Verdict::Fail);
    }
    startBehind(first_);
}

void FactoryTestForm::failRunning() {
    timer_->stop();
    setAsked(-1);
    showHint(nullptr);
    for (int i = 0; i < rows_.size(); ++i) {
        if (isRunning(i))
            setVerdict(i, Verdict::Fail);
    }
}

void FactoryTestForm::peersChanged() {
    TitledForm::peersChanged();
    if (!shell()->linkUp())
        failRunning();
}

// --- A person's judgement ------------------------------------------------------------------

void FactoryTestForm::askPerson(int step) {
    timer_->stop();
    // A second touch was meant for the step before.
    shield();
    setAsked(step);
}

void FactoryTestForm::setAsked(int step) {
    asked_ = step;
    if (pass_ == nullptr)
        return;
    pass_->setEnabled(step >= 0);
    fail_->setEnabled(step >= 0);
    if (action_ != nullptr && actsWhileAsked_)
        action_->setEnabled(step >= 0);
}

// --- What is shown -------------------------------------------------------------------------

bool FactoryTestForm::isRunning(int step) const {
    return rows_.at(step)->verdict() == Verdict::Running;
}

FactoryTestForm::Verdict FactoryTestForm::verdict() const {
    const auto is = [](Verdict verdict) {
        return [verdict](const ListRow* row) { return row->verdict() == verdict; };
    };
    if (std::any_of(rows_.begin(), rows_.end(), is(Verdict::Running)))
        return Verdict::Running;
    if (std::any_of(rows_.begin(), rows_.end(), is(Verdict::Fail)))
        return Verdict::Fail;
    return !rows_.isEmpty() && std::all_of(rows_.begin(), rows_.end(), is(Verdict::Pass))
               ? Verdict::Pass
               : Verdict::NotRun;
}

QJsonObject FactoryTestForm::result() const {
    if (!begun_.isValid())
        return {};
    QJsonArray steps;
    for (int i = 0; i < rows_.size(); ++i) {
        const FactoryStep& rule = steps_[i];
        QJsonObject step{{QStringLiteral("name"), QLatin1String(rule.name)},
                         {QStringLiteral("verdict"), wordOf(rows_.at(i)->verdict())}};
        if (!found_.at(i).value.isUndefined())
            step.insert(QStringLiteral("value"), found_.at(i).value);
        if (const QString unit = unitOf(rule); !unit.isEmpty())
            step.insert(QStringLiteral("unit"), unit);
        if (rule.format != nullptr) {
            const bool open = rule.judgement == FactoryStep::WhenSeen;
            if (!std::isinf(rule.least))
                step.insert(open ? QStringLiteral("above") : QStringLiteral("least"), rule.least);
            if (!std::isinf(rule.most))
                step.insert(open ? QStringLiteral("below") : QStringLiteral("most"), rule.most);
        }
        steps.append(step);
    }
    return {{QStringLiteral("verdict"), wordOf(verdict())},
            {QStringLiteral("begun"), begun_.toString(Qt::ISODate)},
            {QStringLiteral("ended"), ended_.toString(Qt::ISODate)},
            {QStringLiteral("steps"), steps}};
}

void FactoryTestForm::setVerdict(int step, Verdict verdict) {
    const Verdict before = this->verdict();
    rows_.at(step)->setVerdict(verdict);
    const Verdict now = this->verdict();
    if (now == before || (now != Verdict::Pass && now != Verdict::Fail))
        return;
    ended_ = Clock::now();
    emit judged();
}

void FactoryTestForm::showHint(const char* key) {
    hint_->setProperty("scriptKey", QString::fromLatin1(key));
    hint_->setVisible(key != nullptr);
    if (key != nullptr)
        Styler::setText(hint_, shell()->getScript(QLatin1String(key)));
}
