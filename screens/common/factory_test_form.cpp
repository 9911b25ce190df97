#include "screens/common/factory_test_form.h"

#include <QLabel>
#include <QTimer>
#include <QVBoxLayout>
#include <algorithm>
#include <utility>

#include "app/window_shell.h"
#include "link/command_parameters.h"
#include "ui/scroll_list.h"
#include "ui/styler.h"
#include "ui/theme.h"

namespace {

constexpr int kMargin = 16;
constexpr int kGap = 8;
constexpr int kHintGap = 16;

}  // namespace

FactoryTestForm::FactoryTestForm(QWidget* parent, const QString& title)
    : TitledForm(parent, title), timer_(new QTimer(this)) {
    timer_->setObjectName(QStringLiteral("stepTimer"));
    timer_->setSingleShot(true);
    connect(timer_, &QTimer::timeout, this, &FactoryTestForm::timeIsUp);
}

void FactoryTestForm::makeRows(const FactoryStep* steps, int count) {
    steps_ = steps;
    auto* list = new ScrollList(this);
    list->setGeometry(0, Theme::kBarHeight, Theme::kScreenWidth,
                      Theme::kScreenHeight - Theme::kBarHeight);
    list->setWidgetResizable(true);
    auto* rows = new QWidget;
    auto* layout = new QVBoxLayout(rows);
    layout->setContentsMargins(kMargin, kMargin, kMargin, kMargin);
    layout->setSpacing(kGap);
    for (int i = 0; i < count; ++i) {
        auto* row = new ListRow(rows);
        row->setObjectName(QStringLiteral("step%1").arg(i));
        row->setTextKey(QLatin1String(steps[i].labelKey));
        layout->addWidget(row);
        rows_.append(row);
    }
    hint_ = new QLabel(rows);
    hint_->setObjectName(QStringLiteral("hintLabel"));
    hint_->setWordWrap(true);
    hint_->setAlignment(Qt::AlignCenter);
    layout->addSpacing(kHintGap);
    layout->addWidget(hint_);
    layout->addStretch();
    list->setWidget(rows);
}

// --- Coming and going ----------------------------------------------------------------------

void FactoryTestForm::windowInEvent() {
    TitledForm::windowInEvent();
    for (ListRow* row : qAsConst(rows_)) {
        row->setVerdict(Verdict::NotRun);
        row->setValue(QString());
    }
    start(0);
}

void FactoryTestForm::windowOutEvent() {
    TitledForm::windowOutEvent();
    stop();
}

void FactoryTestForm::start(int step) {
    const FactoryStep& first = steps_[step];
    if (started_ != 0 && started_ != first.start)
        stop();
    const bool sent = shell()->SendCommand(first.start, command::factory::Start, first.option);
    // Behind another screen there is nothing to be shown, and nobody to wait.
    if (!isVisible())
        return;
    started_ = first.start;
    first_ = step;
    for (int i = step; i < endOfGroup(step); ++i)
        setVerdict(i, Verdict::Running);
    if (!sent) {
        failRunning();
        return;
    }
    showHint(first.hintKey);
    timer_->start(first.milliseconds);
}

bool FactoryTestForm::stop() {
    timer_->stop();
    showHint(nullptr);
    const std::uint16_t started = std::exchange(started_, 0);
    if (started != 0)
        shell()->SendCommand(started, command::factory::Stop, 0);
    return started != 0;
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
        if (step.format != nullptr)
            rows_.at(i)->setValue(QString::asprintf(step.format, *value));
        const bool passed = *value >= step.least && *value <= step.most;
        if (passed || step.judgement == FactoryStep::ByFirstValue)
            judge(i, passed);
    }
}

void FactoryTestForm::judge(int step, bool passed) {
    const bool ran = isRunning(step);
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
    return std::all_of(rows_.begin(), rows_.end(), is(Verdict::Pass)) ? Verdict::Pass
                                                                      : Verdict::NotRun;
}

void FactoryTestForm::setVerdict(int step, Verdict verdict) {
    const Verdict before = this->verdict();
    rows_.at(step)->setVerdict(verdict);
    const Verdict now = this->verdict();
    if (now != before && (now == Verdict::Pass || now == Verdict::Fail))
        emit judged();
}

void FactoryTestForm::showHint(const char* key) {
    hint_->setProperty("scriptKey", QString::fromLatin1(key));
    hint_->setVisible(key != nullptr);
    if (key != nullptr)
        Styler::setText(hint_, shell()->getScript(QLatin1String(key)));
}
