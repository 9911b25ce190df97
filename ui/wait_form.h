#pragma once

#include "ui/message_overlay.h"

class ProgressBar;
class QLabel;
class Spinner;

/// A dialog without buttons that is shown while something takes its time, with or without a
/// progress bar.
class WaitForm : public MessageOverlay {
    Q_OBJECT

 public:
    explicit WaitForm(QWidget* parent);

    /// 0 to 100 percent; below 0 there is no progress bar, as at first. The number stands below
    /// the bar, unless @p numbered is false because the text tells it.
    void setProgress(int percent, bool numbered = true);

 protected:
    int arrange() override;

 private:
    Spinner* spinner_;
    ProgressBar* bar_;
    QLabel* percent_;
};
