#include "screens/common/screen_popup.h"

#include <utility>

#include "app/window_form.h"
#include "app/window_shell.h"
#include "link/command_parameters.h"
#include "ui/wait_form.h"

namespace {

using Icon = DialogForm::Icon;

bool isPopup(ScreenText::Kind kind) {
    return kind < ScreenText::Question;
}

bool isQuestion(ScreenText::Kind kind) {
    return kind == ScreenText::Question || kind == ScreenText::Danger;
}

bool isWait(ScreenText::Kind kind) {
    return kind == ScreenText::Wait;
}

Icon iconOf(ScreenText::Kind kind) {
    switch (kind) {
        case ScreenText::Error:
            return Icon::Error;
        case ScreenText::Info:
            return Icon::Info;
        case ScreenText::Pass:
            return Icon::Pass;
        case ScreenText::Question:
            return Icon::Question;
        case ScreenText::Warning:
        case ScreenText::Danger:
            return Icon::Warning;
        case ScreenText::Wait:
            break;
    }
    return Icon::None;
}

ScriptHandler::Script script(const char* key) {
    return key != nullptr ? WindowForm::shell()->getScript(QLatin1String(key))
                          : ScriptHandler::Script();
}

template <class Dialog>
Dialog* made(Dialog*& dialog, QWidget* screen, const char* name) {
    if (dialog == nullptr) {
        dialog = new Dialog(screen);
        dialog->setObjectName(QLatin1String(name));
    }
    return dialog;
}

void hideIfMade(QWidget* dialog) {
    if (dialog != nullptr)
        dialog->hide();
}

}  // namespace

const ScreenText* ScreenPopup::find(int number, bool (*isWanted)(ScreenText::Kind)) const {
    for (const Table& table : tables_) {
        for (const ScreenText* text = table.begin; text != table.end; ++text) {
            if (text->number == number && isWanted(text->kind))
                return text;
        }
    }
    return nullptr;
}

void ScreenPopup::show(int number, int seconds, const QString& second) {
    const ScreenText* text = find(number, isPopup);
    if (text == nullptr)
        return;
    made(popup_, screen_, "screenPopup")->hide();
    popup_->setAutoClose(seconds * 1000);
    present(popup_, *text, second);
    if (text->kind == ScreenText::Error)
        WindowForm::shell()->PlaySound(command::sound::Error);
}

void ScreenPopup::show(const PopupText& text, int seconds) {
    made(popup_, screen_, "screenPopup")->hide();
    popup_->setAutoClose(seconds * 1000);
    present(popup_, {0, text.key, ScreenText::Info}, QString());
    popup_->setIcon(text.icon);
    if (text.icon == Icon::Error)
        WindowForm::shell()->PlaySound(command::sound::Error);
}

void ScreenPopup::ask(int number, const Answer& agreed, const Answer& declined) {
    const ScreenText* text = find(number, isQuestion);
    if (text == nullptr)
        return;
    if (question_ == nullptr) {
        made(question_, screen_, "screenQuestion")->setButtonType(DialogForm::OkCancelButtons);
        // Taken out first: an answer may ask the next question.
        QObject::connect(question_, &DialogForm::touchOk, screen_, [this] {
            if (const Answer answer = std::exchange(agreed_, Answer()))
                answer();
        });
        QObject::connect(question_, &DialogForm::closePopup, screen_, [this] {
            if (const Answer answer = std::exchange(declined_, Answer()))
                answer();
        });
    }
    question_->hide();
    agreed_ = agreed;
    declined_ = declined;
    question_->setDanger(text->kind == ScreenText::Danger);
    present(question_, *text, QString());
}

void ScreenPopup::present(DialogForm* dialog, const ScreenText& text, const QString& second) {
    hideIfMade(wait_);
    dialog->setIcon(iconOf(text.kind));
    dialog->setTextKey(QLatin1String(text.key));
    dialog->setSecondTextKey(QLatin1String(text.secondKey));
    if (!second.isEmpty()) {
        ScriptHandler::Script below = script(text.secondKey);
        below.script = second;
        dialog->setSecondText(below);
    }
    dialog->setOkKey(QLatin1String(text.okKey != nullptr ? text.okKey : "TopMenu_OK"));
    dialog->setCancelKey(
        QLatin1String(text.cancelKey != nullptr ? text.cancelKey : "TopMenu_Cancel"));
    dialog->show();
}

void ScreenPopup::wait(int number, int percent) {
    const ScreenText* text = find(number, isWait);
    if (text == nullptr)
        return;
    made(wait_, screen_, "screenWait");
    const bool tellsPercent = script(text->key).script.contains(QLatin1String("%1"));
    wait_->setTextKey(QLatin1String(text->key), QString::number(qBound(0, percent, 100)));
    wait_->setSecondTextKey(QLatin1String(text->secondKey));
    wait_->setProgress(percent, !tellsPercent);
    wait_->show();
}

bool ScreenPopup::isWaiting() const {
    return wait_ != nullptr && wait_->isVisible();
}

void ScreenPopup::close() {
    for (QWidget* dialog : {static_cast<QWidget*>(popup_), static_cast<QWidget*>(question_),
                            static_cast<QWidget*>(wait_)})
        hideIfMade(dialog);
}
