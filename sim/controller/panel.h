#pragma once

#include <QTimer>
#include <QVector>
#include <QWidget>
#include <functional>

class ControllerSim;
class QGridLayout;
class QHBoxLayout;
class QPlainTextEdit;
class QPushButton;
class QVBoxLayout;

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
    void beginColumn();
    QGridLayout* addGroup(const QString& title);
    /// The button gives what @p line says; it stands at the place number @p place of the group,
    /// row by row, or behind the last thing in it.
    QPushButton* addButton(QGridLayout* group, const QString& text,
                           const std::function<QString()>& line, int place = -1);
    void addButton(QGridLayout* group, const QString& text, const QString& line);

    void addPeople();
    void addEnrolment();
    void addTime();
    void addArrangements();
    void addFaults();
    void addShown();
    void follow();

    ControllerSim& controller_;
    QHBoxLayout* const columns_;
    QVBoxLayout* column_ = nullptr;  // the one that groups are added to
    QPlainTextEdit* answers_;
    QVector<std::function<void()>> followers_;
    QTimer clockTimer_;
};
