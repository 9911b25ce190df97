#include "screens/settings/upgrading_window.h"

#include "app/main_window.h"
#include "app/management_link.h"
#include "ui_upgrading_window.h"

upgradingWindow::upgradingWindow(QWidget* parent, const QString& title)
    : TitledForm(parent, title) {}

upgradingWindow::~upgradingWindow() = default;

void upgradingWindow::createForm() {
    ui_ = std::make_unique<Ui::upgradingWindow>();
    ui_->setupUi(this);
    connectForm(ui_->topBar);
    connect(&MainWindow::getMainWindow()->managementLink()->downloads(), &DownloadManager::progress,
            this, &upgradingWindow::showProgress);
}

void upgradingWindow::windowInEvent() {
    TitledForm::windowInEvent();
    // Without a download the new firmware is in place already.
    ui_->downloadText->setVisible(param().isValid());
    ui_->restartText->setVisible(!param().isValid());
    showProgress(0, -1, QString());
}

void upgradingWindow::showProgress(qint64 received, qint64 total, const QString& speed) {
    // A server need not say how much there is to come.
    const bool known = total > 0;
    const int percent = known ? static_cast<int>(received * 100 / total) : 0;
    ui_->spinner->setVisible(!known);
    ui_->downloadBar->setVisible(known);
    ui_->downloadBar->setValue(percent);
    ui_->downloadPercent->setText(known ? QString::number(percent) + QLatin1Char('%') : QString());
    ui_->downloadSpeed->setText(speed);
    // As long as there is something to see the screen stays.
    if (isVisible())
        MainWindow::getMainWindow()->ResetMenuTimer();
}
