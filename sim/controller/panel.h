#pragma once

#include <QTimer>
#include <QVector>
#include <QWidget>
#include <functional>

class ControllerSim;
class QGridLayout;
class QPlainTextEdit;

/// A window of buttons beside the terminal's, for driving the simulated controller by mouse. Every
/// button gives a word, which is shown with its answer, so the panel also teaches the words. What
/// it shows of the controller's state follows the controller, whoever has changed it.
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
    void addEnrolment();
    void addTime();
    void addArrangements();
    void addFaults();
    void addShown();
    void follow();

    ControllerSim& controller_;
    QPlainTextEdit* answers_;
    QVector<std::function<void()>> followers_;
    QTimer clockTimer_;
};
