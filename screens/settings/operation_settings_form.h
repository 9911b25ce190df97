#pragma once

#include <QVector>

#include "link/device_records.h"
#include "screens/common/screen_popup.h"
#include "screens/common/titled_form.h"

class Combo;
class InputField;
class ScrollList;

/// What the settings screens of attendance and of meals have in common. Both edit the operation
/// block of the settings record: a terminal is run with attendance or with meals, and either
/// stores its values in the same bytes.
///
/// The screen edits a copy of its own, read each time the screen comes up and published whole when
/// it is saved.
class OperationSettingsForm : public TitledForm {
    Q_OBJECT

 public:
    /// The popups with lower numbers are those of both screens.
    static constexpr int kFirstOwnPopup = 8;

    /// @p popups are the screen's own popups by number, from kFirstOwnPopup on.
    template <int count>
    OperationSettingsForm(QWidget* parent, const QString& title, const PopupText (&popups)[count])
        : OperationSettingsForm(parent, title, popups, count) {}

    void windowInEvent() override;
    void deviceAnswer(const DeviceMessage& message) override;

    /// Checks what was entered, stores it and sends it to the controller. The first fault shows
    /// its popup, and nothing is stored or sent.
    virtual void saveButtonTouch() = 0;
    /// Takes the controller's answer to a save; 0: stored.
    void SetSettingResult(unsigned char result);
    /// Shows popup number @p code for @p seconds; a number without a text shows nothing.
    void ShowPopup(int code, int seconds);

 protected:
    static constexpr int kPopupSeconds = 3;

    /// A field for a time range, where it is stored, and the numbers of its popups.
    struct TimeField {
        InputField* field;
        _byte4_time_se_ OperationBlock::*range;
        int outOfRange;
        int malformed;
    };

    /// To be called by createForm() instead of the other connectForm(). @p times lie in @p list
    /// and are read in this order.
    void connectForm(TopBar* bar, ScrollList* list, const QVector<TimeField>& times);
    /// Shows operation() on the form; the time fields are set already.
    virtual void showRecord() = 0;

    /// The screen's own copy.
    OperationBlock& operation() { return operation_; }
    /// Shows the choice number @p choice; the first one for a number that has none.
    static void choose(Combo* combo, int choice);
    static std::uint8_t chosen(const Combo* combo);
    /// Reads the time fields into operation(), up to the first one that cannot be read, whose
    /// popup it shows. Whether all could be read.
    bool readTimes();
    /// Stores operation() in the terminal's record and sends it.
    void save();
    /// Sends the times of operation().
    void setTime();

 private:
    OperationSettingsForm(QWidget* parent, const QString& title, const PopupText* popups,
                          int popupCount);
    const PopupText* const popups_;
    const int popupCount_;
    ScreenPopup popup_;
    ScrollList* list_ = nullptr;
    QVector<TimeField> times_;
    OperationBlock operation_{};
};
