#pragma once

#include <QObject>
#include <atomic>

#include "app/settings_change.h"

class RecordStore;

/// The one entrance for changes of the settings record, whoever makes them: the device controller,
/// a screen, the management service. What depends on the settings hears of it here, and only of
/// what has changed. GUI thread only.
class SettingsEntrance : public QObject {
    Q_OBJECT

 public:
    /// @p records outlives the object and keeps the record.
    SettingsEntrance(RecordStore& records, QObject* parent);

    /// Takes the controller's record.
    void receive(const _gui_menu_& record);
    /// Takes a record that was changed at the terminal or by the service.
    void store(const _gui_menu_& record);
    /// Whether the controller has sent its settings since the start. Any thread.
    bool arrived() const { return arrived_; }

 signals:
    /// The record in force is another one. Not sent when it is the same once more.
    void changed(const SettingsChange& change);

 private:
    void take(const _gui_menu_& record, bool first);

    RecordStore& records_;
    std::atomic<bool> arrived_{false};
};
