#include "ui/dialog_stack.h"

#include "ui/dialog_overlay.h"

DialogStack& DialogStack::instance() {
    static DialogStack stack;
    return stack;
}

void DialogStack::open(DialogOverlay* dialog) {
    if (!contains(dialog))
        dialogs_.append(dialog);
}

bool DialogStack::close(DialogOverlay* dialog) {
    return dialogs_.removeOne(dialog);
}

bool DialogStack::contains(const DialogOverlay* dialog) const {
    return dialogs_.contains(const_cast<DialogOverlay*>(dialog));
}

DialogOverlay* DialogStack::top(const QWidget* widget) const {
    DialogOverlay* top = nullptr;
    for (DialogOverlay* dialog : dialogs_) {
        if (dialog->window() == widget->window() && canBeSeen(dialog) &&
            (top == nullptr || dialog->rank() >= top->rank()))
            top = dialog;
    }
    return top;
}

QVector<DialogOverlay*> DialogStack::all(const QWidget* widget) const {
    QVector<DialogOverlay*> all;
    for (DialogOverlay* dialog : dialogs_) {
        if (dialog->window() == widget->window())
            all.append(dialog);
    }
    return all;
}

bool DialogStack::canBeSeen(const DialogOverlay* dialog) const {
    const bool behindScreen =
        screen_ && screen_->window() == dialog->window() && !screen_->isAncestorOf(dialog);
    return !behindScreen && dialog->parentWidget()->isVisible();
}
