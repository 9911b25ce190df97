#pragma once

#include <QVector>
#include <cstddef>
#include <cstdint>
#include <optional>

#include "link/device_message.h"
#include "screens/common/titled_form.h"
#include "ui/list_row.h"

class QLabel;
class QTimer;

/// One thing that a factory test finds out, and how. A row on the screen.
struct FactoryStep {
    enum Judgement : std::uint8_t {
        ByFirstValue,  ///< what is reported first passes or fails
        WhenSeen,      ///< passes as soon as such a value is reported
    };

    std::uint16_t start;   ///< the command that starts and stops it
    std::uint8_t option;   ///< the command's second parameter
    std::uint16_t report;  ///< what tells the value
    const char* labelKey;
    const char* hintKey;  ///< of what a person has to do meanwhile; null for nothing
    /// The value for this step in a report; nothing when it is about another or too short.
    std::optional<double> (*read)(const DeviceMessage& message, const FactoryStep& step);
    const char* format;  ///< of the value, as for printf and one double; null when it is not shown
    double least;        ///< limits: the value passes from here ...
    double most;         ///< ... to here
    Judgement judgement = ByFirstValue;
    int milliseconds = 10000;  ///< for all that is started together with it
};

/// A factory test: what is on it is a table of steps, each a row with its value and its verdict.
/// Coming up it starts with the first; steps that follow each other with the same command and
/// option are started together. What has not passed in its time, or when the link goes, has failed,
/// and the next ones are started. Leaving the screen stops the test.
class FactoryTestForm : public TitledForm {
    Q_OBJECT

 public:
    using Verdict = ListRow::Verdict;

    FactoryTestForm(QWidget* parent, const QString& title);

    void windowInEvent() override;
    void windowOutEvent() override;
    void deviceAnswer(const DeviceMessage& message) override;
    void peersChanged() override;

    /// Of the test as a whole: failed when one step has, passed when all have.
    Verdict verdict() const;

 signals:
    /// The verdict of the whole test has been reached.
    void judged();

 protected:
    /// To be called once, by built(): makes the rows. @p steps must stay.
    template <std::size_t count>
    void setSteps(const FactoryStep (&steps)[count]) {
        makeRows(steps, static_cast<int>(count));
    }
    /// Starts the step number @p step with those that go with it. The command is sent whatever
    /// screen is up.
    void start(int step);
    /// Stops what was started last; false when that has been stopped already.
    bool stop();
    /// A verdict that the screen has come to itself.
    void judge(int step, bool passed);
    bool isRunning(int step) const;
    /// Whether the next steps are started as soon as those before have their verdicts. Otherwise
    /// it is up to the controller, or to the end of their time.
    virtual bool goesOnByItself() const { return true; }

 private:
    void makeRows(const FactoryStep* steps, int count);
    int endOfGroup(int step) const;
    void startBehind(int step);
    void timeIsUp();
    void failRunning();
    void setVerdict(int step, Verdict verdict);
    void showHint(const char* key);

    const FactoryStep* steps_ = nullptr;
    QVector<ListRow*> rows_;
    QLabel* hint_ = nullptr;
    QTimer* const timer_;
    int first_ = 0;              // of the steps that were started last
    std::uint16_t started_ = 0;  // command that is to be stopped, 0 for none
};
