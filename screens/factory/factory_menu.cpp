#include "screens/factory/factory_menu.h"

#include <QCoreApplication>
#include <algorithm>
#include <utility>

#include "app/window_shell.h"
#include "link/command_code.h"
#include "link/command_parameters.h"
#include "screens/factory/factory_report.h"
#include "ui/dialog_form.h"
#include "ui/pictures.h"
#include "ui/styler.h"
#include "ui/theme.h"
#include "ui/touch_shield.h"

namespace {

namespace factory = command::factory;

enum Text { kRestart = 1, kNoLink };

constexpr ScreenText kTexts[] = {
    {kRestart, "Dialog_FactoryRestart", ScreenText::Question, nullptr, "Button_FactoryRestart"},
    {kNoLink, "ListItem_NoController", ScreenText::Error},
};

}  // namespace

FactoryMenu::FactoryMenu(QWidget* parent, const QString& title)
    : FormScreen(parent, title), popup_(this, kTexts) {}

void FactoryMenu::built() {
    const QList<ListRow*> rows = findChildren<ListRow*>();
    for (ListRow* row : rows) {
        const QString title = row->property("target").toString();
        if (auto* form = qobject_cast<FactoryTestForm*>(shell()->getWindow(title))) {
            tests_.append({row->property("result").toString(), row, form});
            connect(form, &FactoryTestForm::judged, this, &FactoryMenu::keepResults);
        }
    }
    connect(ui_->restartRow, &ListRow::touched, this, &FactoryMenu::restart);
    ui_->passIcon->setPixmap(Pictures::icon(QStringLiteral("pass_28.png")));
    ui_->failIcon->setPixmap(Pictures::icon(QStringLiteral("fail_28.png")));
    ui_->notRunIcon->setPixmap(Pictures::icon(QStringLiteral("not_run_28.png")));

    ui_->warning->setInk(Theme::kDanger);
    shield_ = new TouchShield(this);

    shell()->onScreenChange(this, [this](const QString& title) { screenChanging(title); });
    shell()->onLinkChange(this, [this](bool up) { linkChanged(up); });
    connect(qApp, &QCoreApplication::aboutToQuit, this, &FactoryMenu::quitting);
}

// --- Factory mode --------------------------------------------------------------------------

void FactoryMenu::windowInEvent() {
    FormScreen::windowInEvent();
    // A second touch of the way back from a test would leave the menu as well.
    shield_->raiseShield();
    if (!std::exchange(inFactoryMode_, true))
        shell()->SendCommand(command::FactoryMode, factory::Enter, 0);
    leavesLater_ = false;
    keepResults();
    showResults();
}

void FactoryMenu::screenChanging(const QString& title) {
    const bool stays = title == getTitle() ||
                       std::any_of(tests_.begin(), tests_.end(), [&title](const Test& test) {
                           return test.form->getTitle() == title;
                       });
    if (!inFactoryMode_ || stays)
        return;
    leave();
    // A test that was left in the middle has another result than before.
    keepResults();
}

void FactoryMenu::leave() {
    if (std::exchange(inFactoryMode_, false))
        leavesLater_ = !shell()->SendCommand(command::FactoryMode, factory::Leave, 0);
}

void FactoryMenu::quitting() {
    if (auto* test = qobject_cast<FactoryTestForm*>(shell()->getActivateWindowForm()))
        test->windowOutEvent();
    leave();
    keepResults();
}

void FactoryMenu::linkChanged(bool up) {
    if (!up)
        return;
    for (const Test& test : qAsConst(tests_))
        test.form->stopLate();
    // The controller may be another one by now, or have missed what it was told.
    if (inFactoryMode_)
        shell()->SendCommand(command::FactoryMode, factory::Enter, 0);
    else if (std::exchange(leavesLater_, false))
        shell()->SendCommand(command::FactoryMode, factory::Leave, 0);
}

void FactoryMenu::restart() {
    popup_.ask(kRestart, [this] {
        if (!shell()->SendCommand(command::FactoryRestart, 0, 0))
            popup_.show(kNoLink);
    });
}

// --- Results -------------------------------------------------------------------------------

void FactoryMenu::keepResults() {
    QJsonArray results;
    for (const Test& test : qAsConst(tests_)) {
        QJsonObject result = test.form->result();
        if (result.isEmpty())
            result.insert(QStringLiteral("verdict"), QStringLiteral("not run"));
        result.insert(QStringLiteral("name"), test.name);
        results.append(result);
    }
    const bool anyRun = std::any_of(tests_.begin(), tests_.end(), [](const Test& test) {
        return !test.form->result().isEmpty();
    });
    if (!anyRun || results == kept_)
        return;
    const bool failedBefore = notWritten_;
    notWritten_ = !FactoryReport::write(*shell(), results);
    if (!notWritten_)
        kept_ = results;
    else if (!failedBefore)
        sayNotWritten();
}

void FactoryMenu::sayNotWritten() {
    // Above whichever of the tests is up; it goes on meanwhile.
    auto* dialog = new DialogForm(window(), ScreenPopup::kSeconds * 1000);
    dialog->setDeleteOnClose(true);
    dialog->setIcon(DialogForm::Icon::Error);
    dialog->setTextKey(QStringLiteral("Error_FactoryReport"));
    dialog->setOkKey(QStringLiteral("TopMenu_OK"));
    dialog->show();
    shell()->PlaySound(command::sound::Error);
}

void FactoryMenu::scriptsApplied() {
    showResults();
}

void FactoryMenu::showResults() {
    int count[3] = {};  // passed, failed, not run
    for (const Test& test : qAsConst(tests_)) {
        const ListRow::Verdict verdict = test.form->verdict();
        test.row->setVerdict(verdict);
        ++count[verdict == ListRow::Verdict::Pass ? 0 : verdict == ListRow::Verdict::Fail ? 1 : 2];
    }
    const struct {
        QLabel* label;
        const char* key;
        QRgb color;
    } kCounts[] = {{ui_->passLabel, "Info_FactoryPassed", Theme::kAccent},
                   {ui_->failLabel, "Info_FactoryFailed", Theme::kDanger},
                   {ui_->notRunLabel, "Info_FactoryNotRun", Theme::kList}};
    for (const auto& one : kCounts) {
        ScriptHandler::Script script = shell()->getScript(QLatin1String(one.key));
        const QString span =
            QStringLiteral("<span style='color : %1; font-weight : 500;'>%2</span>")
                .arg(Theme::color(one.color).name(),
                     script.script.replace(QLatin1String("%1"),
                                           QString::number(count[&one - kCounts])));
        script.script =
            StylerFont(QStringLiteral("%1%").arg(static_cast<double>(script.height))).getHtml(span);
        one.label->setProperty("textKey", QLatin1String(one.key));
        Styler::setText(one.label, script);
    }
    QString summary = shell()->getScript(ui_->summary->textKey()).script;
    ui_->summary->setText(summary.replace(QLatin1String("%1"), QString::number(count[0]))
                              .replace(QLatin1String("%2"), QString::number(tests_.size())));
    ui_->warning->setVisible(notWritten_);
}
