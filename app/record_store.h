#pragma once

#include <QMutex>
#include <QMutexLocker>

#include "link/device_records.h"

/// The terminal's copies of the records that it shares with the device controller. A copy is
/// always taken and stored whole. Usable from any thread: the REST server reads the settings while
/// the GUI thread changes them.
class RecordStore {
 public:
    _gui_menu_ menu() const { return copy(menu_); }
    /// Only SettingsEntrance stores it, which tells everybody whom it concerns.
    void setMenu(const _gui_menu_& record) { store(menu_, record); }
    _gui_user_ user() const { return copy(user_); }
    void setUser(const _gui_user_& record) { store(user_, record); }
    GUI_USERLOG userLog() const { return copy(userLog_); }
    void setUserLog(const GUI_USERLOG& record) { store(userLog_, record); }
    MEAL_COUNT mealCount() const { return copy(mealCount_); }
    void setMealCount(const MEAL_COUNT& record) { store(mealCount_, record); }

 private:
    template <typename Record>
    Record copy(const Record& record) const {
        const QMutexLocker lock(&lock_);
        return record;
    }
    template <typename Record>
    void store(Record& kept, const Record& record) {
        const QMutexLocker lock(&lock_);
        kept = record;
    }

    mutable QMutex lock_;
    _gui_menu_ menu_{};
    _gui_user_ user_{};
    GUI_USERLOG userLog_{};
    MEAL_COUNT mealCount_{};
};
