#pragma once

#include <QVector>

#include "screens/common/titled_form.h"

class ListRow;

/// A screen on which one value of the screen above it is chosen: that of a SettingsForm, or of
/// another such screen. It comes up with the value as its parameter, and Back returns with the
/// chosen one. Left in any other way, what was changed above is forgotten as if the person had gone
/// from there.
class SettingsPart : public TitledForm {
    Q_OBJECT

 public:
    using TitledForm::TitledForm;

    void windowInEvent() override;
    void windowOutEvent() override;
    /// The person has gone elsewhere from a screen below.
    void discard();

 protected:
    int value() const { return value_; }
    /// Makes @p value the chosen one.
    void choose(int value);
    /// Each of @p rows stands for its position; the one that holds carries its mark.
    void bind(const QVector<ListRow*>& rows);
    /// Leads to the screen @p title, on which @p value is chosen; it comes back with returned().
    void openPart(const QString& title, int value);
    void prevButtonTouch() override;

    /// Called when the value has been shown or chosen.
    virtual void valueShown() {}
    /// Called when the person has chosen a value, before it is shown.
    virtual void chosen(int) {}
    /// Called when a screen below has come back with a value.
    virtual void returned(int) {}

 private:
    QVector<ListRow*> rows_;
    int value_ = 0;
    bool staysOpen_ = false;  // the next change of screens leads one down or one up
    bool below_ = false;
};
