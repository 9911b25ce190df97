#pragma once

#include <QMetaType>
#include <QString>
#include <QVector>
#include <cstdint>

class WindowShell;

/// One enrolment on its way from step to step. Which steps there are and in which order, what is
/// sent on the way to one, and what begins and breaks off its capture stand here in tables; a
/// screen only says when it is done. What has been entered so far is the shell's user record.
///
/// Each screen hands it to the next one as that one's parameter, so that a screen which comes up in
/// any other way takes part in no enrolment. GUI thread only.
class EnrolFlow {
 public:
    enum Step : std::uint8_t {
        Choice,
        Qualification,
        Number,
        Destination,
        Card,
        CardAgain,  ///< of somebody who is there already
        Face,
    };
    /// Rows of the qualification screen, to be combined.
    enum Row : std::uint8_t { LevelRow = 1, RightsRow = 2, GlassesRow = 4 };

    EnrolFlow() = default;
    /// Begins with the qualification of whom the shell's user record holds. @p mode is one of
    /// AuthMethod; an unknown one counts as the first. Except at the live view, a record with an
    /// ID is that of somebody who is there already and gets what they lack of the mode.
    static EnrolFlow begin(int mode, WindowShell& shell);
    /// The first step, on which @p mode is marked.
    static EnrolFlow choice(int mode);
    /// No enrolment, for the screen @p title; it looks as in one with all steps.
    static EnrolFlow none(const QString& title);

    bool isRunning() const { return running_; }
    int mode() const { return mode_; }
    Step step() const { return step_; }
    /// Whether it was begun at the live view by whoever stands there, as registration mode allows.
    bool needsRegistrationMode() const;
    /// Whether somebody who is there already gets what they lack.
    bool isSupplement() const { return lacks_ != 0; }
    /// A combination of Row.
    int rows() const;

    /// All steps of this enrolment, in order.
    QVector<Step> steps() const;
    /// Which one of them this is, from 1.
    int stepNumber() const { return steps().indexOf(step_) + 1; }
    bool hasNext() const { return stepNumber() < steps().size(); }
    /// The screen of the step before; empty when there is no way back.
    QString previousTitle() const;

    /// Shows the next step or the one before, with all that is sent for it. False, with nothing
    /// sent, when there is none or screens may not be changed.
    bool goOn(WindowShell& shell) const;
    bool goBack(WindowShell& shell) const;

    /// Begins the capture of this step; false when it cannot be sent, or there is none.
    bool startCapture(WindowShell& shell) const;
    /// Breaks it off; @p stage is how far it has come.
    void abandonCapture(WindowShell& shell, std::uint8_t stage = 0) const;

    /// Switches camera and detection off and shows the screen where the enrolment began. Nothing
    /// when screens may not be changed.
    static void leave(WindowShell& shell);

 private:
    bool show(Step step, WindowShell& shell) const;

    bool running_ = false;
    bool byService_ = false;
    bool visitor_ = false;
    std::uint8_t lacks_ = 0;   // what a supplement captures, bits of the steps
    std::uint8_t method_ = 0;  // of the registration mode
    int mode_ = 0;
    Step step_ = Choice;
};
Q_DECLARE_METATYPE(EnrolFlow)
