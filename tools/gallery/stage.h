#pragma once

#include <QImage>
#include <QPointer>
#include <QTcpServer>
#include <memory>

#include "app/main_window.h"
#include "app/window_form.h"
#include "link/device_records.h"
#include "sim/device_root.h"
#include "ui/input_field.h"

class WidgetButton;

/// The real terminal in a device root of its own, with a stopped clock and a device controller that
/// is there but says nothing, so that what is brought about on it looks the same each time.
///
/// One at a time in a process, made after the application object and before DevicePaths is used.
class Stage {
 public:
    Stage();
    ~Stage();

    MainWindow& window() { return *window_; }
    const DeviceRoot& root() const { return root_; }
    /// Where the terminal's connection arrives when the event loop runs.
    QTcpServer& controller() { return controller_; }

    /// Ends the connection to the device controller, until open() is called.
    void loseController();

    /// Starts the terminal anew, as after power-on, in the language that it had.
    void restart();
    /// The same in the language of that number.
    void restart(int language);
    int language() const { return settings_.setup.language; }
    /// What the languages' scripts are called, without their endings, in the order of the numbers.
    QStringList languages() const;
    /// Sets the stopped clock, until open() is called.
    void setTime(const QDateTime& time);
    /// The settings that the terminal started with, and others that the controller tells it until
    /// open() is called.
    const _gui_menu_& settings() const { return settings_; }
    void changeSettings(const _gui_menu_& settings);
    /// Those of a terminal that counts meals.
    _gui_menu_ mealSettings() const;
    /// Shows the screen @p title as it comes up, with nothing in front of it.
    void open(const QString& title);
    /// What the window shows, with everything that turns or blinks at its beginning.
    QImage picture();
    /// The same on something else.
    void paint(QPaintDevice* device);

    /// Hands the terminal a frame of the device controller.
    void receive(unsigned short code, unsigned char p1 = 0, const QByteArray& payload = {});
    void receive(unsigned short code, unsigned char p1, unsigned char p2);
    template <class Record>
    void receiveRecord(unsigned short code, const Record& record, unsigned char p1 = 0) {
        receive(code, p1, QByteArray(reinterpret_cast<const char*>(&record), sizeof record));
    }
    /// A self-check has found the faults of @p word.
    void findFaults(quint32 word);
    /// The screen that is open.
    template <class Screen>
    Screen* active() const {
        return static_cast<Screen*>(window_->getActivateWindowForm());
    }
    /// Puts a widget on the active screen, or a dialog in front of it, until open() is called.
    template <class Widget>
    Widget* add(const QRect& place = {}) {
        auto* widget = new Widget(window_->getActivateWindowForm());
        added_.append(widget);
        if (place.isValid())
            widget->setGeometry(place);
        return widget;
    }
    /// Gives the screen's widgets their texts and shows what was added.
    void showAdded();
    /// Opens the keypad at a field for such characters, and touches its keys @p keys (by their
    /// names, with a blank between two). The option key types @p option.
    void useKeypad(InputField::Characters characters, const char* keys, const char* option = "");
    /// Touches the button @p name, after scrolling to it.
    void touch(const QString& name);
    /// Touches the row number @p row of the list of rows that is shown.
    void touchRow(int row);
    /// The same as touch() without lifting the finger, until open() is called.
    void press(const QString& name);

 private:
    void clear();
    /// Ends the terminal's connections; more than a few that nobody takes keep out the next one.
    void hangUp();
    WidgetButton* button(const QString& name);
    void tellSettings(const _gui_menu_& settings);

    DeviceRoot root_;
    QTcpServer controller_;
    _gui_menu_ settings_;  // what the controller would tell
    const int service_;    // a socket that listens
    bool settingsChanged_ = false;
    bool controllerLost_ = false;
    std::unique_ptr<MainWindow> window_;
    QList<QPointer<QWidget>> added_;
    QPointer<WidgetButton> pressed_;
};
