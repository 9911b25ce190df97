#include "screens/settings/upgrading_window.h"

#include "app/window_shell.h"
#include "cloud/download_manager.h"

void upgradingWindow::built() {
    const DownloadManager* downloads = &shell()->downloads();
    connect(downloads, &DownloadManager::progress, this, &upgradingWindow::showProgress);
    connect(downloads, QOverload<>::of(&DownloadManager::finished), this,
            &upgradingWindow::downloadEnded);
}

void upgradingWindow::windowInEvent() {
    FormScreen::windowInEvent();
    showState();
}

void upgradingWindow::setParam(QVariant param) {
    FormScreen::setParam(std::move(param));
    if (!isVisible())
        return;
    showState();
    // Perhaps it was about to be left.
    shell()->StopMenuTimer();
}

void upgradingWindow::showState() {
    // Without a download the new firmware is in place already.
    downloading_ = param().isValid();
    ui_->downloadText->setVisible(downloading_);
    ui_->restartText->setVisible(!downloading_);
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
}

void upgradingWindow::downloadEnded() {
    downloading_ = false;
    peersChanged();
}

void upgradingWindow::peersChanged() {
    FormScreen::peersChanged();
    // What has been downloaded waits for the controller's word, which will not come without it. An
    // upgrade in place ends the link, too, but then the terminal restarts.
    if (isVisible() && param().isValid() && !downloading_ && !shell()->linkUp())
        shell()->StartMenuTimer();
}
