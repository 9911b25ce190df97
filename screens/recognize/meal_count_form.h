#pragma once

#include "ui/dialog_overlay.h"
#include "ui/scripted.h"
#include "ui/visible_timer.h"

class LabelButton;
class MealRow;
struct _gui_menu_;

/// The popup that tells how many meals have been taken in the present periods. Meals that the
/// settings switch off step back.
class MealCountForm : public DialogOverlay, public Scripted {
    Q_OBJECT

 public:
    /// Covers @p parent and closes by itself after @p timeoutMs milliseconds, 0 for never.
    MealCountForm(QWidget* parent, int timeoutMs);

    /// Whether @p settings want the counts to be seen at the door.
    static bool isOffered(const _gui_menu_& settings);
    /// Shows the counts over @p screen for some seconds, or until it is left. The dialog deletes
    /// itself.
    static MealCountForm* open(QWidget* screen);

    void setbreakfastText(const ScriptHandler::Script& name) { setName(0, name); }
    void setlunchText(const ScriptHandler::Script& name) { setName(1, name); }
    void setdinnerText(const ScriptHandler::Script& name) { setName(2, name); }
    void setsupperText(const ScriptHandler::Script& name) { setName(3, name); }
    void setbreakfast_countText(const QString& count) { setCount(0, count); }
    void setlunch_countText(const QString& count) { setCount(1, count); }
    void setdinner_countText(const QString& count) { setCount(2, count); }
    void setsupper_countText(const QString& count) { setCount(3, count); }

    void applyScripts(const Lookup&) override { showCounts(); }

 protected:
    int arrange() override;
    void showEvent(QShowEvent* event) override;

 private:
    static constexpr int kMeals = 4;

    void setName(int meal, const ScriptHandler::Script& name);
    void setCount(int meal, const QString& count);
    void showCounts();

    MealRow* rows_[kMeals];
    LabelButton* ok_;
    VisibleTimer timeout_{this};
};
