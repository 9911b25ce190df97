#include "screens/settings/zel_menu_form.h"

#include <QEvent>

#include "app/screen_titles.h"
#include "app/window_shell.h"
#include "link/record_values.h"

namespace {

constexpr int kFactoryTaps = 5;
constexpr int kFactoryTime = 3000;  // milliseconds for all taps

}  // namespace

void ZelMenuForm::built() {
    ui_->topBar->installEventFilter(this);
}

void ZelMenuForm::windowInEvent() {
    FormScreen::windowInEvent();
    enableTiles();
}

void ZelMenuForm::settingsChanged(const SettingsChange& change) {
    FormScreen::settingsChanged(change);
    enableTiles();
}

void ZelMenuForm::enableTiles() {
    const bool meals = shell()->menuRecord().setup.operation == Operation::Meals;
    ui_->menuFoodTile->setEnabled(meals);
    ui_->menuWorkTile->setEnabled(!meals);
}

bool ZelMenuForm::eventFilter(QObject* watched, QEvent* event) {
    // The bar's buttons keep their touches to themselves; what arrives here is the title's.
    // The second of two quick taps comes as a double click.
    if (event->type() == QEvent::MouseButtonPress || event->type() == QEvent::MouseButtonDblClick)
        titleTapped();
    return FormScreen::eventFilter(watched, event);
}

void ZelMenuForm::titleTapped() {
    if (taps_ == 0 || firstTap_.hasExpired(kFactoryTime)) {
        taps_ = 0;
        firstTap_.start();
    }
    if (++taps_ < kFactoryTaps)
        return;
    taps_ = 0;
    shell()->changeWindow(screen_title::kFactoryMenu);
}
