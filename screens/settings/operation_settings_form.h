#pragma once

#include <QVector>

#include "screens/common/settings_form.h"

/// What the settings screens of attendance and of meals have in common. Both edit the operation
/// block of the settings record: a terminal is run with attendance or with meals, and either
/// stores its values in the same bytes. So neither screen can be had while the other operation is
/// in force.
class OperationSettingsForm : public SettingsForm {
    Q_OBJECT

 public:
    OperationSettingsForm(QWidget* parent, const QString& title);

    void windowInEvent() override;
    void settingsChanged(const SettingsChange& change) override;

    /// Sends the times that the record holds; false when it could not.
    bool setTime();

 protected:
    using SettingsForm::bind;

    /// Whether the screen is for a terminal that is run as @p operation says.
    virtual bool isFor(std::uint8_t operation) const = 0;

    /// A time range, and the numbers of its popups.
    void bind(InputField* input, _byte4_time_se_ OperationBlock::*range, int outOfRange,
              int malformed);
    /// What lies beside @p box can be used while it is ticked.
    static void useWhileTicked(const CheckBox* box);
    bool sendSlice(const _gui_menu_& edited) override;

 private:
    /// Goes back to the menu if the screen is not for the operation in force. Whether it was so.
    bool leftForOtherOperation();
};
