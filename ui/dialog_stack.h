#pragma once

#include <QPointer>
#include <QVector>
#include <QWidget>

class DialogOverlay;

/// What a dialog is for. A later one lies above every earlier one.
enum class DialogRank {
    Wait,     ///< something goes on; asks for nothing
    Message,  ///< an outcome, a notice, a question
    Fault,    ///< something is broken, and somebody has to see it
};

/// The dialogs that are open, and which of them is to be seen: in each window one, the latest of
/// the highest rank. It covers the others, which come back when it is closed. GUI thread only.
class DialogStack {
 public:
    static DialogStack& instance();

    /// Puts @p dialog on top of its rank, unless it is open already.
    void open(DialogOverlay* dialog);
    /// False when it is not open, seen or covered.
    bool close(DialogOverlay* dialog);
    bool contains(const DialogOverlay* dialog) const;

    /// The one to be seen in @p widget's top-level window, or null.
    DialogOverlay* top(const QWidget* widget) const;
    /// All that are open in that window, the latest last.
    QVector<DialogOverlay*> all(const QWidget* widget) const;

    /// From now on @p screen covers the dialogs of its window, but for its own; null ends that.
    void coverWith(QWidget* screen) { screen_ = screen; }

 private:
    bool canBeSeen(const DialogOverlay* dialog) const;

    QVector<DialogOverlay*> dialogs_;
    QPointer<QWidget> screen_;
};
