#include "screens/common/screen_popup.h"

#include <utility>

#include "app/window_form.h"
#include "app/window_shell.h"
#include "link/command_parameters.h"
#include "ui/wait_form.h"

namespace {

using Icon = DialogForm::Icon;

constexpr float kSecondSize = 20;  // pixels, of a line that no script holds
constexpr int kGraveTime = 2000;   // milliseconds

bool isPopup(ScreenText::Kind kind) {
    return kind < ScreenText::Question;
}

bool isQuestion(ScreenText::Kind kind) {
    return kind >= ScreenText::Question && kind < ScreenText::Wait;
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
        case ScreenText::Grave:
            return Icon::Warning;
        case ScreenText::Wait:
            break;
    }
    return Icon::None;
}

QString keyOr(const char* key, const char* otherwise) {
    return QLatin1String(key != nullptr ? key : otherwise);
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
    for (int i = tables_.size() - 1; i >= 0; --i) {
        for (const ScreenText* text = tables_.at(i).begin; text != tables_.at(i).end; ++text) {
            if (text->number == number && isWanted(text->kind))
                return text;
        }
    }
    return nullptr;
}

bool ScreenPopup::show(int number, int seconds, const QString& second) {
    return showThen(number, Answer(), seconds, second);
}

bool ScreenPopup::showThen(int number, const Answer& closed, int seconds, const QString& second) {
    const ScreenText* text = find(number, isPopup);
    if (text == nullptr)
        return false;
    if (popup_ == nullptr) {
        made(popup_, screen_, "screenPopup");
        const auto tell = [this] {
            if (const Answer answer = std::exchange(closed_, Answer()))
                answer();
        };
        QObject::connect(popup_, &DialogForm::touchOk, screen_, tell);
        QObject::connect(popup_, &DialogForm::closePopup, screen_, tell);
    }
    popup_->hide();
    closed_ = closed;
    popup_->setAutoClose(seconds * 1000);
    present(popup_, *text, second);
    if (text->kind == ScreenText::Error)
        WindowForm::shell()->PlaySound(command::sound::Error);
    return true;
}

bool ScreenPopup::ask(int number, const Answer& agreed, const Answer& declined,
                      const QString& second, int seconds) {
    const ScreenText* text = find(number, isQuestion);
    if (text == nullptr)
        return false;
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
    question_->setAutoClose(seconds * 1000);
    question_->setDanger(text->kind != ScreenText::Question);
    question_->setOkDelay(text->kind == ScreenText::Grave ? kGraveTime : 0);
    present(question_, *text, second);
    return true;
}

void ScreenPopup::present(DialogForm* dialog, const ScreenText& text, const QString& second) {
    endWait();
    dialog->setIcon(iconOf(text.kind));
    dialog->setTextKey(QLatin1String(text.key));
    dialog->setSecondTextKey(QLatin1String(text.secondKey));
    if (!second.isEmpty()) {
        ScriptHandler::Script below = WindowForm::shell()->getScript(QLatin1String(text.key));
        below.size = kSecondSize;
        below.script = second;
        dialog->setSecondText(below);
    }
    dialog->setOkKey(keyOr(text.okKey, "TopMenu_OK"));
    dialog->setCancelKey(keyOr(text.cancelKey, "TopMenu_Cancel"));
    dialog->show();
}

bool ScreenPopup::wait(int number, int percent) {
    const ScreenText* text = find(number, isWait);
    if (text == nullptr)
        return false;
    const QString key = QLatin1String(text->key);
    const bool tellsPercent =
        WindowForm::shell()->getScript(key).script.contains(QLatin1String("%1"));
    made(wait_, screen_, "screenWait");
    wait_->setTextKey(key, QString::number(qBound(0, percent, 100)));
    wait_->setSecondTextKey(QLatin1String(text->secondKey));
    wait_->setProgress(percent, !tellsPercent);
    wait_->show();
    return true;
}

void ScreenPopup::endWait() {
    hideIfMade(wait_);
}

bool ScreenPopup::isOpen() const {
    return popup_ != nullptr && popup_->isOpen();
}

void ScreenPopup::close() {
    closed_ = Answer();
    hideIfMade(popup_);
}
