#include "screens/common/settings_form.h"

#include <QVariant>
#include <algorithm>
#include <utility>

#include "app/settings_change.h"
#include "app/window_shell.h"
#include "base/ipv4.h"
#include "ui/check_box.h"
#include "ui/choice.h"
#include "ui/input_field.h"
#include "ui/plus_minus.h"
#include "ui/scroll_list.h"
#include "ui/top_bar.h"

namespace {

constexpr ScreenText kTexts[] = {
    {SettingsForm::Saving, "ListItem_SavingConfiguring", ScreenText::Wait},
    {SettingsForm::Saved, "ListItem_ConfigurationComplete", ScreenText::Pass},
    {SettingsForm::Refused, "Error_SettingsRefused", ScreenText::Error},
    {SettingsForm::NoAnswer, "Error_ControllerSilent", ScreenText::Error},
    {SettingsForm::NoConnection, "ListItem_NoController", ScreenText::Error},
};

/// The row that @p widget is or lies on, or null.
ListRow* rowOf(QWidget* widget) {
    while (widget != nullptr && qobject_cast<ListRow*>(widget) == nullptr)
        widget = widget->parentWidget();
    return static_cast<ListRow*>(widget);
}

/// The number that @p text is, if it is one of at most @p most.
bool readNumber(const QString& text, std::uint32_t most, std::uint32_t* number) {
    bool isNumber = false;
    const qulonglong read = text.toULongLong(&isNumber);
    if (!isNumber || read > most)
        return false;
    *number = static_cast<std::uint32_t>(read);
    return true;
}

}  // namespace

/// A widget and the field that it edits.
struct SettingsForm::Binding {
    QWidget* widget;
    Load load;
    Store store;
    Load tell;               // of a value that is heard or seen at once
    std::uint32_t part = 0;  // the value of one that is chosen elsewhere
    bool touched = false;    // by the person, since the record was shown
    bool told = false;       // the controller tries another value than the stored one
};

SettingsForm::SettingsForm(QWidget* parent, const QString& title)
    : TitledForm(parent, title), popup_(this, kTexts), request_(this) {
    connect(&request_, &DeviceRequest::answered, this,
            [this](const DeviceMessage& message) { SetSettingResult(message.p1); });
    connect(&request_, &DeviceRequest::failed, this, [this](DeviceRequest::Failure why) {
        unanswered_ = true;
        endSaving();
        putBack();
        ShowPopup(why == DeviceRequest::Failure::LinkDown ? NoConnection : NoAnswer, kPopupSeconds);
    });
}

SettingsForm::~SettingsForm() = default;

void SettingsForm::connectForm(TopBar* bar) {
    TitledForm::connectForm(bar);
    bar_ = bar;
    list_ = findChild<ScrollList*>();
    connect(bar, &TopBar::forwardTouched, this, [this] { saveButtonTouch(); });
}

// --- Coming and going ----------------------------------------------------------------------

void SettingsForm::windowInEvent() {
    TitledForm::windowInEvent();
    Binding* part = std::exchange(openPart_, nullptr);
    if (part != nullptr && param().isValid()) {
        part->part = param().toUInt();
        part->touched = true;
        load(false);
        return;
    }
    load(true);
    if (list_ != nullptr)
        list_->rewind();
}

void SettingsForm::windowOutEvent() {
    // What was sent is stored by now, in all likelihood; whether it was will not be heard here.
    if (request_.isWaiting())
        takeSent();
    TitledForm::windowOutEvent();
    endSaving();
    unanswered_ = false;
    if (openPart_ == nullptr)
        discard();
}

void SettingsForm::discard() {
    openPart_ = nullptr;
    unmark();
    tellStored();
}

void SettingsForm::settingsChanged(const SettingsChange& change) {
    TitledForm::settingsChanged(change);
    if (publishing_)
        return;
    // What the controller holds now is what it goes back to. Others change other parts of a record
    // that holds here what has been sent.
    if (request_.isWaiting() && bytes_ && bytes_(change.before) != bytes_(change.now))
        former_ = change.now;
    load(false);
}

// --- Saving --------------------------------------------------------------------------------

void SettingsForm::saveButtonTouch() {
    const bool agreed = std::exchange(agreed_, false);
    if (request_.isWaiting())
        return;
    shell()->removeTouchKey();
    unmark();
    former_ = shell()->menuRecord();
    _gui_menu_ edited = former_;
    for (const auto& binding : bindings_) {
        if (const int wrong = binding->store(edited)) {
            fault(wrong, {binding->widget});
            return;
        }
    }
    if (!validate(edited))
        return;
    if (!shell()->linkUp() || !shell()->settingsArrived()) {
        ShowPopup(NoConnection, kPopupSeconds);
        return;
    }
    const int question = agreed ? 0 : questionBefore(edited);
    // What was agreed to is read again: other settings may have arrived meanwhile.
    const bool asked = popup_.ask(question, [this] {
        agreed_ = true;
        saveButtonTouch();
    });
    if (!asked)
        store(edited);
}

void SettingsForm::store(const _gui_menu_& edited) {
    sent_ = edited;
    unanswered_ = false;
    _gui_menu_ stored = edited;
    holdBack(stored, former_);
    publish(stored);
    if (!sendSlice(edited)) {
        request_.cancel();
        putBack();
        ShowPopup(NoConnection, kPopupSeconds);
        return;
    }
    bar_->button(TopBar::Forward)->setEnabled(false);
    ShowPopup(Saving, 0);
}

bool SettingsForm::sendSlice(const _gui_menu_& edited) {
    return request_.send(save_, p1_, 0, bytes_(edited), {answer_}, kAnswerTime);
}

void SettingsForm::deviceAnswer(const DeviceMessage& message) {
    // The answer to a save that was given up is better late than never, as long as it is clear
    // which save it is about.
    if (message.command == answer_ && unanswered_ && !request_.isWaiting())
        SetSettingResult(message.p1);
    else
        TitledForm::deviceAnswer(message);
}

void SettingsForm::SetSettingResult(unsigned char result) {
    const bool waited = !bar_->button(TopBar::Forward)->isEnabled();
    request_.cancel();
    endSaving();
    if (result != command::answer::Done) {
        if (waited) {
            putBack();
            ShowPopup(Refused, kPopupSeconds);
        }
        unanswered_ = false;
        return;
    }
    if (waited || std::exchange(unanswered_, false)) {
        takeSent();
        for (const auto& binding : bindings_)
            binding->told = false;
        load(waited);
    }
    ShowPopup(Saved, kPopupSeconds);
    saved();
}

void SettingsForm::takeSent() {
    // The record may have come anew while the save was on its way.
    _gui_menu_ record = shell()->menuRecord();
    copySlice_(sent_, record);
    confirmed(record);
    publish(record);
}

void SettingsForm::endSaving() {
    if (bar_ == nullptr)
        return;
    bar_->button(TopBar::Forward)->setEnabled(true);
    popup_.endWait();
}

void SettingsForm::putBack() {
    _gui_menu_ record = shell()->menuRecord();
    copySlice_(former_, record);
    publish(record);
}

void SettingsForm::publish(const _gui_menu_& record) {
    publishing_ = true;
    shell()->SetGuiMenu(&record);
    publishing_ = false;
}

bool SettingsForm::validate(_gui_menu_&) {
    return true;
}

int SettingsForm::questionBefore(const _gui_menu_&) {
    return 0;
}

void SettingsForm::holdBack(_gui_menu_&, const _gui_menu_&) {}

void SettingsForm::confirmed(_gui_menu_&) {}

void SettingsForm::fault(int number, const QVector<QWidget*>& widgets) {
    QStringList names;
    for (QWidget* widget : widgets) {
        ListRow* row = rowOf(widget);
        if (row == nullptr)
            continue;
        row->setFaulty(true);
        marked_.append(row);
        names.append(row->label());
    }
    if (list_ != nullptr && !widgets.isEmpty())
        list_->reveal(widgets.first());
    const QString both = names.size() > 1 ? names.join(QLatin1Char('\n')) : QString();
    popup_.show(number, kPopupSeconds, both);
}

void SettingsForm::unmark() {
    for (ListRow* row : std::exchange(marked_, {}))
        row->setFaulty(false);
}

void SettingsForm::ShowPopup(int code, int seconds) {
    if (code == Saving)
        popup_.wait(code);
    else
        popup_.show(code, seconds);
}

// --- What the widgets show -----------------------------------------------------------------

SettingsForm::Binding* SettingsForm::find(const QWidget* widget) const {
    const auto found = std::find_if(bindings_.begin(), bindings_.end(),
                                    [widget](const auto& one) { return one->widget == widget; });
    return found != bindings_.end() ? found->get() : nullptr;
}

void SettingsForm::load(bool everything) {
    const _gui_menu_ record = shell()->menuRecord();
    loading_ = true;
    for (const auto& binding : bindings_) {
        if (everything)
            binding->touched = false;
        // What is being typed over is not taken away from below the finger.
        const auto* input = qobject_cast<InputField*>(binding->widget);
        const bool typing = !everything && input != nullptr && input->isEditing();
        if (!binding->touched && !typing)
            binding->load(record);
    }
    loading_ = false;
    valuesShown();
}

void SettingsForm::touched(QWidget* widget) {
    if (loading_)
        return;
    Binding* binding = find(widget);
    binding->touched = true;
    if (ListRow* row = rowOf(widget))
        row->setFaulty(false);
    tell(binding);
}

void SettingsForm::tryPart(std::uint32_t value) {
    if (openPart_ == nullptr)
        return;
    openPart_->part = value;
    tell(openPart_);
}

void SettingsForm::tell(Binding* binding) {
    if (!binding->tell)
        return;
    _gui_menu_ tried = shell()->menuRecord();
    binding->store(tried);
    binding->told = true;
    binding->tell(tried);
}

std::uint32_t SettingsForm::partValue(const ListRow* row) const {
    return find(row)->part;
}

void SettingsForm::reload(QWidget* widget) {
    Binding* binding = find(widget);
    const bool loading = std::exchange(loading_, true);
    binding->touched = false;
    binding->load(shell()->menuRecord());
    loading_ = loading;
}

void SettingsForm::atOnce(QWidget* widget, const Load& tell) {
    find(widget)->tell = tell;
}

void SettingsForm::tellStored() {
    const _gui_menu_ record = shell()->menuRecord();
    for (const auto& binding : bindings_) {
        if (std::exchange(binding->told, false))
            binding->tell(record);
    }
}

// --- Bindings ------------------------------------------------------------------------------

void SettingsForm::bindOther(QWidget* widget, const Load& load, const Store& store) {
    auto binding = std::make_unique<Binding>();
    binding->widget = widget;
    binding->load = load;
    binding->store = store;
    bindings_.push_back(std::move(binding));
}

void SettingsForm::bindChoice(Choice* choice, const NumberField& field, Way way,
                              std::uint32_t first) {
    bindOther(
        choice,
        [=](const _gui_menu_& record) {
            const int last = choice->count() - 1;
            const std::uint32_t value = qMax(field.get(record), first) - first;
            const int nearest = static_cast<int>(qMin<std::uint32_t>(value, last));
            choice->setCurrentIndex(way == kInverted ? last - nearest : nearest);
        },
        [=](_gui_menu_& record) {
            const int index = choice->currentIndex();
            field.set(record, first + (way == kInverted ? choice->count() - 1 - index : index));
            return 0;
        });
    connect(choice, &Choice::currentIndexChanged, this, [this, choice] { touched(choice); });
}

void SettingsForm::bindBox(CheckBox* box, const NumberField& field, Way way) {
    bindOther(
        box,
        [=](const _gui_menu_& record) {
            box->setChecked((field.get(record) != 0) != (way == kInverted));
        },
        [=](_gui_menu_& record) {
            field.set(record, box->isChecked() != (way == kInverted) ? 1 : 0);
            return 0;
        });
    connect(box, &CheckBox::toggled, this, [this, box] { touched(box); });
}

void SettingsForm::bindPlusMinus(PlusMinus* control, const NumberField& field, int unset) {
    bindOther(
        control,
        [=](const _gui_menu_& record) {
            const std::uint32_t value = field.get(record);
            control->setValue(value != 0 ? static_cast<int>(value) : unset);
        },
        [=](_gui_menu_& record) {
            field.set(record, static_cast<std::uint32_t>(control->value()));
            return 0;
        });
    connect(control, &PlusMinus::valueChanged, this, [this, control] { touched(control); });
}

void SettingsForm::bindInput(InputField* input, const Load& load, const Store& store) {
    bindOther(input, load, store);
    connect(input, &InputField::textChanged, this, [this, input] { touched(input); });
    // Nothing was typed: the field missed what has arrived meanwhile.
    connect(input, &InputField::editingFinished, this, [this, input] {
        if (!find(input)->touched)
            this->load(false);
    });
}

void SettingsForm::bindText(InputField* input, const std::function<QString(const _gui_menu_&)>& get,
                            const std::function<void(_gui_menu_&, const QString&)>& set, int fault,
                            bool (*isValid)(const QString&)) {
    bindInput(
        input, [=](const _gui_menu_& record) { input->setText(get(record)); },
        [=](_gui_menu_& record) {
            if (isValid != nullptr && !isValid(input->text()))
                return fault;
            set(record, input->text());
            return 0;
        });
}

void SettingsForm::bindNumber(InputField* input, const NumberField& field, Range range, int fault) {
    bindInput(
        input,
        [=](const _gui_menu_& record) {
            const std::uint32_t nearest = qBound(range.least, field.get(record), range.most);
            input->setText(QString::number(nearest));
        },
        [=](_gui_menu_& record) {
            std::uint32_t value = 0;
            if (!readNumber(input->text(), range.most, &value) || value < range.least)
                return fault;
            field.set(record, value);
            return 0;
        });
}

void SettingsForm::bindAddress(InputField* input,
                               const std::function<AddressField(_gui_menu_&)>& field,
                               AddressRule rule, int fault) {
    bindInput(
        input,
        [=](const _gui_menu_& record) {
            _gui_menu_ copy = record;
            input->setText(addressText(field(copy)));
        },
        [=](_gui_menu_& record) { return readAddress(*input, rule, field(record)) ? 0 : fault; });
}

bool SettingsForm::readAddress(const InputField& input, AddressRule rule, AddressField address) {
    const bool none = rule == kAddressOrNone && input.text().isEmpty();
    const auto read = none ? Ipv4::Address{} : Ipv4::read(input.text());
    if (read)
        std::copy(read->begin(), read->end(), address);
    return read.has_value();
}

QString SettingsForm::addressText(const std::uint8_t (&address)[4]) {
    const bool none = std::all_of(std::begin(address), std::end(address),
                                  [](std::uint8_t number) { return number == 0; });
    return none ? QString() : Ipv4::dotted(address);
}

void SettingsForm::bindPartOf(ListRow* row, const NumberField& field, const QString& title) {
    row->setProperty("target", title);  // as other rows say where they lead
    bindOther(
        row, [=](const _gui_menu_& record) { find(row)->part = field.get(record); },
        [=](_gui_menu_& record) {
            field.set(record, find(row)->part);
            return 0;
        });
    connect(row, &WidgetButton::touched, this, [=] {
        // Before the change: it tells this screen that it is left.
        openPart_ = find(row);
        if (shell()->changeWindow(title, openPart_->part) != 0)
            openPart_ = nullptr;
    });
}
