#pragma once

#include <QDateTime>
#include <QJsonObject>
#include <QJsonValue>
#include <QVector>
#include <cstddef>
#include <cstdint>
#include <limits>
#include <optional>

#include "link/device_message.h"
#include "screens/common/titled_form.h"
#include "ui/list_row.h"

class LabelButton;
class QLabel;
class QTimer;
class QVBoxLayout;
class ScrollList;
class TouchShield;

/// One thing that a factory test finds out, and how. A row on the screen.
struct FactoryStep {
    enum Judgement : std::uint8_t {
        ByFirstValue,  ///< what is reported first passes or fails; a later value may only fail it
        WhenSeen,      ///< passes as soon as such a value is reported
        ByPerson,      ///< a person says how it is
        AlsoByPerson,  ///< what is reported first may fail it; else a person says how it is
    };
    /// No limit at that end, of WhenSeen.
    static constexpr double kOpen = std::numeric_limits<double>::infinity();
    /// For an answer of the controller, in milliseconds.
    static constexpr int kAnswerTime = 10000;

    std::uint16_t start;   ///< the command that starts and stops it
    std::uint8_t option;   ///< the command's second parameter
    std::uint16_t report;  ///< what tells the value, 0 for nothing that the controller reports
    const char* labelKey;
    const char* hintKey;  ///< of what a person has to do meanwhile; null for nothing
    /// The value for this step in a report; nothing when it is about another or too short.
    std::optional<double> (*read)(const DeviceMessage& message, const FactoryStep& step);
    /// Of the value, as for printf and one double: a number, and its unit behind a blank. Null when
    /// it is not shown.
    const char* format;
    /// Limits: the value passes from the one to the other, or strictly between them with WhenSeen.
    double least;
    double most;
    Judgement judgement = ByFirstValue;
    /// For all that is started together with it, a person's judgement aside. With WhenSeen, where
    /// it may be longer, it begins with the first report, for which there is kAnswerTime.
    int milliseconds = kAnswerTime;
    const char* name = "";  ///< what the file of all results calls it
    /// The value in words, where it is no number: shown in its place.
    QString (*text)(const DeviceMessage& message) = nullptr;
};

/// What steps read from reports.
namespace factory_read {

/// The result in the first parameter.
std::optional<double> result(const DeviceMessage& message, const FactoryStep& step);
/// The same, when the second parameter names the step's option.
std::optional<double> resultOfOption(const DeviceMessage& message, const FactoryStep& step);
/// The first number of 16 bits.
std::optional<double> number(const DeviceMessage& message, const FactoryStep& step);

}  // namespace factory_read

/// A factory test: what is on it is a table of steps, each a row with its limits, its value and its
/// verdict. Coming up it starts with the first; steps that follow each other with the same command
/// and option are started together. What has not passed in its time has failed, and the next ones
/// are started; when the link goes, what runs has failed and nothing more is started. A step that a
/// person judges waits for the buttons at the foot. Leaving the screen stops the test, and what was
/// not finished then has not run.
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
    /// Verdict, times and steps with their values and limits, for the file of all results. Empty
    /// when the test has never been run.
    QJsonObject result() const;
    /// Sends the stop that could not be sent while there was no link.
    void stopLate();

 signals:
    /// The verdict of the whole test has been reached.
    void judged();

 protected:
    /// To be called once, by built(): makes the rows. @p steps must stay.
    template <std::size_t count>
    void setSteps(const FactoryStep (&steps)[count]) {
        makeRows(steps, static_cast<int>(count));
    }
    /// Puts @p content, as large as it is, below the rows, or below the first @p rows of them.
    void addContent(QWidget* content, int rows = -1);
    /// A further button at the foot, above those for a person's judgement; it can be touched all
    /// the time, or only while a person is asked.
    LabelButton* addAction(const char* textKey, const char* name, bool whileAsked = false);

    /// Starts the step number @p step with those that go with it. The command is sent whatever
    /// screen is up.
    void start(int step);
    /// From now on what was started last has its time, for steps of which nothing is reported.
    void beginTime();
    /// Stops what was started last; false when that has been stopped already.
    bool stop();
    /// A value that has been found out for a step: shows it, and judges by it.
    void take(int step, double value, const QString& text = QString());
    /// A verdict that the screen has come to itself.
    void judge(int step, bool passed);
    /// Has the person judge the step.
    void askPerson(int step);
    bool isRunning(int step) const;
    /// The step that waits for a person, -1 when none does.
    int askedStep() const { return asked_; }
    ListRow* row(int step) const { return rows_.at(step); }
    /// Nothing that comes up right now takes the finger that is on its way.
    void shield();
    /// Whether the next steps are started as soon as those before have their verdicts. Otherwise
    /// it is up to the controller, or to the end of their time.
    virtual bool goesOnByItself() const { return true; }
    /// Whether a person can judge as soon as the step is started. Otherwise the screen says when.
    virtual bool asksAtOnce() const { return true; }

 private:
    struct Found {
        QJsonValue value;     // undefined before there is one
        bool spoilt = false;  // a value has failed it
    };

    void makeRows(const FactoryStep* steps, int count);
    LabelButton* addJudgement(const char* textKey, const char* name, int column, bool passed);
    void placeFoot();
    int endOfGroup(int step) const;
    void startBehind(int step);
    void timeIsUp();
    void failRunning();
    void setVerdict(int step, Verdict verdict);
    void setAsked(int step);
    void showHint(const char* key);

    const FactoryStep* steps_ = nullptr;
    QVector<ListRow*> rows_;
    QVector<Found> found_;
    ScrollList* list_ = nullptr;
    QVBoxLayout* layout_ = nullptr;
    QLabel* hint_ = nullptr;
    LabelButton* pass_ = nullptr;
    LabelButton* fail_ = nullptr;
    LabelButton* action_ = nullptr;
    TouchShield* shield_ = nullptr;
    QTimer* const timer_;
    int first_ = 0;                // of the steps that were started last
    int asked_ = -1;               // the one that waits for a person
    std::uint16_t started_ = 0;    // command that is to be stopped, 0 for none
    std::uint16_t unstopped_ = 0;  // the one whose stop could not be sent, 0 for none
    bool answered_ = false;        // something was reported since
    bool actsWhileAsked_ = false;
    QDateTime begun_;
    QDateTime ended_;
};
