#pragma once

#include <QStringList>
#include <QVector>
#include <algorithm>
#include <cstring>
#include <functional>
#include <memory>
#include <type_traits>
#include <vector>

#include "link/command_parameters.h"
#include "link/device_message.h"
#include "link/device_records.h"
#include "screens/common/device_request.h"
#include "screens/common/screen_popup.h"
#include "screens/common/settings_block.h"
#include "screens/common/titled_form.h"
#include "ui/list_row.h"

class CheckBox;
class Choice;
class InputField;
class PlusMinus;
class ScrollList;

/// A screen on which settings are changed and saved. It says once which widget edits which field of
/// the record, and which part of the record a save sends; the rest is the same for all:
///
/// - It comes up with what the record holds, a value out of range as the nearest one there is. Left
///   without a save it has changed nothing.
/// - Save reads the widgets in the order in which they were bound, then asks validate(). The first
///   fault brings its row into view, marks it and says what is wrong, and nothing is sent.
/// - Without a link, or before the controller has sent its settings, it says so and stores nothing.
///   Otherwise the record is stored, the slice sent, and the answer waited for. A refusal or no
///   answer puts the former slice back; the widgets keep what was entered.
/// - A record that arrives meanwhile is taken into all that the person has not touched, shown here
///   or merely kept.
class SettingsForm : public TitledForm {
    Q_OBJECT

 public:
    /// Numbers of the popups that all these screens have besides their own.
    enum Outcome { Saving = 1001, Saved, Refused, NoAnswer, NoConnection };

    SettingsForm(QWidget* parent, const QString& title);
    ~SettingsForm() override;

    void windowInEvent() override;
    void windowOutEvent() override;
    void settingsChanged(const SettingsChange& change) override;
    void deviceAnswer(const DeviceMessage& message) override;

    /// Checks, stores and sends what was entered.
    virtual void saveButtonTouch();
    /// Takes the controller's answer to a save; 0: stored.
    void SetSettingResult(unsigned char result);
    /// Shows popup number @p code for @p seconds; a number without a text shows nothing.
    void ShowPopup(int code, int seconds);
    /// The person has gone elsewhere from a screen on which a value of this one is chosen: what was
    /// changed here is forgotten.
    void discard();
    /// The person has touched @p value on that screen, and may hear or see it at once.
    void tryPart(std::uint32_t value);

 protected:
    static constexpr int kPopupSeconds = 3;
    static constexpr int kAnswerTime = 5000;  // milliseconds

    enum Way {
        kPlain,
        kInverted,  ///< the left word and a set mark are what the other value says
    };
    enum AddressRule { kAddress, kAddressOrNone };
    struct Range {
        std::uint32_t least;
        std::uint32_t most;
    };

    /// Sends what is wrong with a widget's value as the number of its popup; 0 when it is stored.
    using Store = std::function<int(_gui_menu_&)>;
    using Load = std::function<void(const _gui_menu_&)>;
    using AddressField = std::uint8_t (&)[4];

    /// To be called by FormScreen.
    void connectForm(TopBar* bar);
    /// What the screen says by numbers of its own.
    ScreenPopup& popup() { return popup_; }

    // --- Which part of the record a save is about --------------------------------------------
    /// A save sends @p block with @p save and is answered by @p answer.
    template <class Block>
    void slice(Block _gui_menu_::*block, std::uint16_t save, std::uint16_t answer,
               std::uint8_t p1 = command::save::Settings) {
        save_ = save;
        answer_ = answer;
        p1_ = p1;
        bytes_ = [block](const _gui_menu_& record) {
            return QByteArray(reinterpret_cast<const char*>(&(record.*block)), sizeof(Block));
        };
        copySlice_ = [block](const _gui_menu_& from, _gui_menu_& to) { to.*block = from.*block; };
    }
    /// Sends the slice of @p edited; false when it could not. For a screen that sends another
    /// payload than the block itself: it sends by request(), so that the answer is waited for.
    virtual bool sendSlice(const _gui_menu_& edited);
    DeviceRequest& request() { return request_; }

    // --- Which widget edits which field ------------------------------------------------------
    /// The position of the choice, counted from @p first.
    template <class Block>
    void bind(Choice* choice, std::uint8_t Block::*field, Way way = kPlain,
              std::uint32_t first = 0) {
        bindChoice(choice, number(field), way, first);
    }
    template <class Block>
    void bind(CheckBox* box, std::uint8_t Block::*field, Way way = kPlain) {
        bindBox(box, number(field), way);
    }
    /// @p unset is shown for a field that holds 0, if that is no value of it.
    template <class Block, class Number>
    void bind(PlusMinus* control, Number Block::*field, int unset = 0) {
        bindPlusMinus(control, number(field), unset);
    }
    /// A text, which @p isValid, else popup @p fault says what is wrong.
    template <class Block, std::size_t size>
    void bind(InputField* input, char (Block::*field)[size], int fault = 0,
              bool (*isValid)(const QString&) = nullptr) {
        bindText(
            input,
            [field](const _gui_menu_& record) {
                return fieldText(settings_block::in<Block>(record).*field);
            },
            [field](_gui_menu_& record, const QString& text) {
                setFieldText(settings_block::in<Block>(record).*field, text);
            },
            fault, isValid);
    }
    /// A number in decimal digits; popup @p fault when it is not in @p range.
    template <class Block, class Number>
    void bind(InputField* input, Number Block::*field, Range range, int fault) {
        bindNumber(input, number(field), range, fault);
    }
    /// An address of four numbers; one of zeros shows as an empty field.
    template <class Block>
    void bind(InputField* input, std::uint8_t (Block::*field)[4], AddressRule rule, int fault) {
        bindAddress(
            input,
            [field](_gui_menu_& record) -> AddressField {
                return settings_block::in<Block>(record).*field;
            },
            rule, fault);
    }
    /// A value of at most @p most that is chosen on the screen @p title, a SettingsPart to which
    /// @p row leads.
    template <class Block>
    void bindPart(ListRow* row, std::uint8_t Block::*field, const QString& title,
                  std::uint32_t most = 0xFF) {
        NumberField chosen = number(field);
        chosen.get = [field = chosen.get, most](const _gui_menu_& record) {
            return std::min(field(record), most);
        };
        bindPartOf(row, chosen, title);
    }
    /// The same for a value that is not a field by itself.
    void bindPart(ListRow* row, const std::function<std::uint32_t(const _gui_menu_&)>& get,
                  const std::function<void(_gui_menu_&, std::uint32_t)>& set,
                  const QString& title) {
        bindPartOf(row, {get, set}, title);
    }
    /// What has been chosen for the @p row of a bindPart().
    std::uint32_t partValue(const ListRow* row) const;
    /// Any other: @p load shows the record's value on @p widget, @p store puts it back. Whoever
    /// binds so calls touched() when the person changes the value.
    void bindOther(QWidget* widget, const Load& load, const Store& store);
    void touched(QWidget* widget);
    /// The same for a field, which needs no more.
    void bindInput(InputField* input, const Load& load, const Store& store);
    /// Shows the record's value on the bound @p widget once more, as if nobody had touched it.
    void reload(QWidget* widget);
    /// Puts what @p input says into @p address; false, and nothing put, when that is none.
    static bool readAddress(const InputField& input, AddressRule rule, AddressField address);
    /// An address of zeros gives an empty text.
    static QString addressText(const std::uint8_t (&address)[4]);

    /// The person hears or sees the value of the bound @p widget as it changes: @p tell has the
    /// controller try what the record says. Called with the stored one again when the screen is
    /// left without a save. For a row that leads to a SettingsPart it is told what is touched
    /// there.
    void atOnce(QWidget* widget, const Load& tell);

    // --- What a screen may add ---------------------------------------------------------------
    /// Looks at what was entered as a whole; @p edited may be completed. False when something is
    /// wrong, after fault().
    virtual bool validate(_gui_menu_& edited);
    /// The number of a question that is asked before @p edited is stored; 0 for none.
    virtual int questionBefore(const _gui_menu_& edited);
    /// Called when a save is sent, with the record that is stored meanwhile: what comes into force
    /// only when the controller has confirmed it is put back to how it is in @p former.
    virtual void holdBack(_gui_menu_& stored, const _gui_menu_& former);
    /// Called when the controller has confirmed a save, with the record that is about to be stored
    /// and may be completed.
    virtual void confirmed(_gui_menu_& record);
    /// Brings the row of the first of @p widgets into view, marks the rows of all and shows popup
    /// @p number, with their names if there are several.
    void fault(int number, const QVector<QWidget*>& widgets);
    /// Called after the widgets have been set from the record.
    virtual void valuesShown() {}
    /// Called when that has been stored and shown.
    virtual void saved() {}

 private:
    struct NumberField {
        std::function<std::uint32_t(const _gui_menu_&)> get;
        std::function<void(_gui_menu_&, std::uint32_t)> set;
    };
    struct Binding;

    template <class Block, class Number>
    static NumberField number(Number Block::*field) {
        static_assert(std::is_unsigned_v<Number>);
        // Byte by byte: records are packed, so that a number may lie anywhere.
        return {[field](const _gui_menu_& record) -> std::uint32_t {
                    Number value;
                    std::memcpy(&value, &(settings_block::in<Block>(record).*field), sizeof value);
                    return value;
                },
                [field](_gui_menu_& record, std::uint32_t value) {
                    const auto stored = static_cast<Number>(value);
                    std::memcpy(&(settings_block::in<Block>(record).*field), &stored,
                                sizeof stored);
                }};
    }

    void bindChoice(Choice* choice, const NumberField& field, Way way, std::uint32_t first);
    void bindBox(CheckBox* box, const NumberField& field, Way way);
    void bindPlusMinus(PlusMinus* control, const NumberField& field, int unset);
    void bindText(InputField* input, const std::function<QString(const _gui_menu_&)>& get,
                  const std::function<void(_gui_menu_&, const QString&)>& set, int fault,
                  bool (*isValid)(const QString&));
    void bindNumber(InputField* input, const NumberField& field, Range range, int fault);
    void bindAddress(InputField* input, const std::function<AddressField(_gui_menu_&)>& field,
                     AddressRule rule, int fault);
    void bindPartOf(ListRow* row, const NumberField& field, const QString& title);

    Binding* find(const QWidget* widget) const;
    void tell(Binding* binding);
    void store(const _gui_menu_& edited);
    /// Makes the record what the controller has been sent.
    void takeSent();
    void load(bool everything);
    void publish(const _gui_menu_& record);
    void putBack();
    void endSaving();
    void tellStored();
    void unmark();

    ScreenPopup popup_;
    DeviceRequest request_;
    TopBar* bar_ = nullptr;
    ScrollList* list_ = nullptr;

    std::uint16_t save_ = 0;
    std::uint16_t answer_ = 0;
    std::uint8_t p1_ = 0;
    std::function<QByteArray(const _gui_menu_&)> bytes_;
    std::function<void(const _gui_menu_&, _gui_menu_&)> copySlice_;

    std::vector<std::unique_ptr<Binding>> bindings_;
    QVector<ListRow*> marked_;
    Binding* openPart_ = nullptr;  // its screen is the one that is up
    _gui_menu_ former_{};
    _gui_menu_ sent_{};
    bool loading_ = false;
    bool publishing_ = false;
    bool agreed_ = false;      // to the question before the save
    bool unanswered_ = false;  // the last save was given up
};
