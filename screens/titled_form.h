#pragma once

#include "app/window_form.h"

class TopBar;

/// A screen with a title bar, whose back and home buttons lead where they always lead, and whose
/// rows and tiles may lead to other screens.
class TitledForm : public WindowForm {
    Q_OBJECT

 public:
    /// @p backTitle is the screen that the back button returns to; empty when there is none.
    TitledForm(QWidget* parent, const QString& title, const QString& backTitle);

 protected:
    /// To be called by createForm() when the form is there. Connects @p bar, and every touchable
    /// widget with a dynamic property "target" to the screen of that title; the bar's own way
    /// forward is its property "forwardTarget".
    void connectForm(TopBar* bar);
    /// Where the bar's buttons lead; a screen with more to do when it is left overrides them.
    virtual void prevButtonTouch();
    virtual void homeButtonTouch();

 private:
    const QString backTitle_;
};
