#include "app/window_form.h"

#include <QLoggingCategory>

#include "app/window_shell.h"
#include "link/device_message.h"
#include "ui/scripted.h"
#include "ui/theme.h"

Q_LOGGING_CATEGORY(windowLog, "zel.app.window", QtInfoMsg)

namespace {

WindowShell* theShell = nullptr;

}  // namespace

void WindowForm::setShell(WindowShell* shell) {
    theShell = shell;
}

WindowShell* WindowForm::shell() {
    return theShell;
}

WindowForm::WindowForm(QWidget* parent, const QString& title) : QWidget(parent), title_(title) {
    setObjectName(title);
    setGeometry(0, 0, Theme::kScreenWidth, Theme::kScreenHeight);
    // A new child of a shown window would come up with it; screens come up one at a time.
    hide();
}

void WindowForm::windowInEvent() {
    qCDebug(windowLog, "%s : Window Form In Event", qUtf8Printable(title_));
}

void WindowForm::windowOutEvent() {
    param_ = QVariant();
}

void WindowForm::setParam(QVariant param) {
    param_ = std::move(param);
}

void WindowForm::deviceAnswer(const DeviceMessage&) {}

void WindowForm::settingsChanged(const SettingsChange&) {
    ensureForm();
}

void WindowForm::ensureForm() {
    if (!formBuilt_) {
        formBuilt_ = true;
        QPalette colors = palette();
        colors.setColor(QPalette::Window, Theme::color(Theme::kBackground));
        colors.setColor(QPalette::WindowText, Theme::color(Theme::kStrong));
        setPalette(colors);
        setAutoFillBackground(true);
        createForm();
    }
    if (theShell == nullptr || scriptRevision_ == theShell->scriptRevision())
        return;
    scriptRevision_ = theShell->scriptRevision();
    Scripted::applyBelow(this, [](const QString& key) { return theShell->getScript(key); });
    scriptsApplied();
}

void WindowForm::setVisible(bool visible) {
    if (visible)
        ensureForm();
    QWidget::setVisible(visible);
}

void WindowForm::scriptsApplied() {}

void WindowForm::showEvent(QShowEvent* event) {
    QWidget::showEvent(event);
    if (theShell != nullptr)
        theShell->removeTouchKey();
    windowInEvent();
}
