#include "screens/common/settings_part.h"

#include <QVariant>
#include <utility>

#include "app/window_shell.h"
#include "screens/common/settings_form.h"
#include "ui/list_row.h"

void SettingsPart::windowInEvent() {
    TitledForm::windowInEvent();
    staysOpen_ = false;
    if (std::exchange(below_, false))
        returned(param().toInt());
    else
        value_ = param().toInt();
    choose(value_);
}

void SettingsPart::windowOutEvent() {
    TitledForm::windowOutEvent();
    if (!std::exchange(staysOpen_, false))
        discard();
}

void SettingsPart::discard() {
    below_ = false;
    WindowForm* above = shell()->getWindow(backTarget());
    if (auto* form = qobject_cast<SettingsForm*>(above))
        form->discard();
    else if (auto* part = qobject_cast<SettingsPart*>(above))
        part->discard();
}

void SettingsPart::choose(int value) {
    value_ = value;
    for (int i = 0; i < rows_.size(); ++i)
        rows_.at(i)->setSelected(i == qBound(0, value_, rows_.size() - 1));
    valueShown();
}

void SettingsPart::bind(const QVector<ListRow*>& rows) {
    rows_ = rows;
    for (int i = 0; i < rows.size(); ++i)
        connect(rows.at(i), &WidgetButton::touched, this, [this, i] {
            chosen(i);
            choose(i);
            if (auto* form = qobject_cast<SettingsForm*>(shell()->getWindow(backTarget())))
                form->tryPart(static_cast<std::uint32_t>(i));
        });
}

void SettingsPart::openPart(const QString& title, int value) {
    staysOpen_ = true;
    below_ = true;
    if (shell()->changeWindow(title, value) != 0)
        staysOpen_ = below_ = false;
}

void SettingsPart::prevButtonTouch() {
    staysOpen_ = true;
    if (shell()->changeWindow(backTarget(), value_) != 0)
        staysOpen_ = false;
}
