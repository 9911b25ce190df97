#include "app/settings_entrance.h"

#include "app/record_store.h"

SettingsEntrance::SettingsEntrance(RecordStore& records, QObject* parent)
    : QObject(parent), records_(records) {}

void SettingsEntrance::receive(const _gui_menu_& record) {
    const bool first = !arrived_;
    // Before the signal: who hears it may ask.
    arrived_ = true;
    take(record, first);
}

void SettingsEntrance::store(const _gui_menu_& record) {
    take(record, false);
}

void SettingsEntrance::take(const _gui_menu_& record, bool first) {
    const _gui_menu_ before = records_.menu();
    const _gui_menu_ now = record;
    records_.setMenu(now);
    const SettingsChange change{before, now, first};
    if (change.any())
        emit changed(change);
}
