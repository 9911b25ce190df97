#include "screens/recognize/meal_count_form.h"

#include <QPainter>

#include "app/window_form.h"
#include "app/window_shell.h"
#include "link/device_records.h"
#include "link/record_values.h"
#include "ui/label_button.h"
#include "ui/text_fit.h"
#include "ui/theme.h"

namespace {

constexpr int kRowsTop = 17;
constexpr int kRowHeight = 64;
constexpr int kButtonGap = 28;
constexpr int kButtonHeight = 72;
constexpr int kTimeout = 10000;
constexpr TextFit::Rule kCount{{{28, 1}}};

}  // namespace

/// One meal: its name, its count and a line below.
class MealRow : public QWidget {
 public:
    using QWidget::QWidget;

    void setName(const ScriptHandler::Script& name) {
        name_ = name;
        update();
    }
    void setCount(const QString& count) {
        count_ = count;
        update();
    }

 protected:
    void paintEvent(QPaintEvent*) override {
        QPainter painter(this);
        painter.fillRect(0, height() - 1, width(), 1, Theme::color(Theme::kPressed));
        const QRect line = rect().adjusted(0, 0, 0, -1);
        ScriptHandler::Script count = name_;
        count.script = count_;
        TextFit::draw(&painter, line, Qt::AlignRight, count, kCount, QFont::Bold,
                      isEnabled() ? Theme::kStrong : Theme::kOff);
        const int countWidth = TextFit::width(count, kCount, QFont::Bold);
        TextFit::draw(&painter, line.adjusted(0, 0, -countWidth, 0), Qt::AlignLeft, name_,
                      TextFit::kChoice, QFont::Medium, isEnabled() ? Theme::kCaption : Theme::kOff);
    }

 private:
    ScriptHandler::Script name_;
    QString count_;
};

MealCountForm::MealCountForm(QWidget* parent, int timeoutMs)
    : DialogOverlay(parent), ok_(new LabelButton(card())) {
    setObjectName(QStringLiteral("mealCountForm"));
    for (MealRow*& row : rows_)
        row = new MealRow(card());
    ok_->setObjectName(QStringLiteral("mealCountOkButton"));
    ok_->setRole(LabelButton::Primary);
    timeout_.setInterval(timeoutMs);
    timeout_.setSingleShot(true);
    connect(ok_, &LabelButton::touched, this, &QWidget::hide);
    connect(&timeout_, &QTimer::timeout, this, &QWidget::hide);
    WindowForm::shell()->onScreenChange(this, [this](const QString&) { windowChanged(); });
}

bool MealCountForm::isOffered(const _gui_menu_& settings) {
    return settings.setup.operation == Operation::Meals &&
           settings.operation.mealCountView == MealCountView::Shown;
}

MealCountForm* MealCountForm::open(QWidget* screen) {
    auto* form = new MealCountForm(screen, kTimeout);
    form->checkWindowChange(true);
    form->setDeleteOnClose(true);
    form->show();
    return form;
}

void MealCountForm::setName(int meal, const ScriptHandler::Script& name) {
    rows_[meal]->setName(name);
}

void MealCountForm::setCount(int meal, const QString& count) {
    rows_[meal]->setCount(count);
}

int MealCountForm::arrange() {
    int y = kRowsTop;
    for (MealRow* row : rows_) {
        row->setGeometry(kSide, y, kInnerWidth, kRowHeight);
        y += kRowHeight;
    }
    y += kButtonGap;
    ok_->setGeometry(kSide, y, kInnerWidth, kButtonHeight);
    return y + kButtonHeight + kBottom;
}

void MealCountForm::showCounts() {
    const WindowShell* shell = WindowForm::shell();
    setbreakfastText(shell->getScript(QStringLiteral("ListItem_Breakfast")));
    setlunchText(shell->getScript(QStringLiteral("ListItem_Lunch")));
    setdinnerText(shell->getScript(QStringLiteral("ListItem_Dinner")));
    setsupperText(shell->getScript(QStringLiteral("ListItem_Supper")));
    ok_->setScript(shell->getScript(QStringLiteral("TopMenu_OK")));

    MEAL_COUNT counts;
    shell->GetMealCount(&counts);
    setbreakfast_countText(QString::number(counts.breakfast));
    setlunch_countText(QString::number(counts.lunch));
    setdinner_countText(QString::number(counts.dinner));
    setsupper_countText(QString::number(counts.supper));

    const OperationBlock meals = shell->menuRecord().operation;
    const quint8 off[kMeals] = {meals.attendanceMode, meals.lunchOff, meals.saveSimpleAccess,
                                meals.supperOff};
    for (int meal = 0; meal < kMeals; ++meal)
        rows_[meal]->setEnabled(off[meal] == 0);
}

void MealCountForm::showEvent(QShowEvent* event) {
    showCounts();
    DialogOverlay::showEvent(event);
    if (timeout_.interval() > 0)
        timeout_.start();
}
