#include "app/window_registry.h"

#include "app/window_form.h"
#include "ui/dialog_overlay.h"

WindowForm* WindowRegistry::find(const QString& title) const {
    for (WindowForm* window : windows_) {
        if (window->getTitle() == title)
            return window;
    }
    return nullptr;
}

WindowRegistry::Result WindowRegistry::change(const QString& title, const QVariant* param) {
    if (!changeAllowed_ || (active_ != nullptr && active_->getTitle() == title))
        return kRefused;
    WindowForm* next = find(title);
    if (next == nullptr)
        return kNoSuchWindow;

    if (active_ != nullptr)
        active_->windowOutEvent();
    emit changing(title);
    if (param != nullptr)
        next->setParam(*param);
    // The window counts as active while it comes up, since what it does then may depend on it.
    active_ = next;
    activeIndex_ = windows_.indexOf(next);
    // Raised first: what it opens as it comes up, such as the keypad, lies above it.
    next->raise();
    DialogOverlay::coverWith(next, next->coversDialogs() ? next : nullptr);
    next->show();
    // A dialog that is up stays the topmost.
    if (DialogOverlay* dialog = DialogOverlay::current(next))
        dialog->raise();
    for (WindowForm* window : qAsConst(windows_)) {
        if (window != active_)
            window->hide();
    }
    emit changed();
    return kDone;
}

void WindowRegistry::deleteAll() {
    active_ = nullptr;
    activeIndex_ = -1;
    while (!windows_.isEmpty())
        delete windows_.takeLast();
}
