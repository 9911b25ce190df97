#pragma once

#include <QWidget>

class ControllerSim;
class QGridLayout;
class QPlainTextEdit;

/// A window of buttons beside the terminal's, for driving the simulated controller by mouse. Every
/// button gives a word, which is shown with its answer, so the panel also teaches the words.
class Panel : public QWidget {
    Q_OBJECT

 public:
    /// @p controller must outlive the panel.
    explicit Panel(ControllerSim& controller);

 private:
    void give(const QString& line);
    QGridLayout* addGroup(const QString& title);
    void addButton(QGridLayout* group, const QString& text, const QString& line);

    void addPeople();
    void addTime();
    void addArrangements();
    void addFaults();

    ControllerSim& controller_;
    QPlainTextEdit* answers_;
};
