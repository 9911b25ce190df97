#pragma once

#include <QString>
#include <QVariant>
#include <QWidget>

struct DeviceMessage;
struct SettingsChange;
class WindowShell;

/// Base of every full-screen screen. A screen is created once at start-up as a light object; what
/// it shows is built when it is first needed (ensureForm()) and gets its texts whenever it is shown
/// and the language has changed since. GUI thread only.
class WindowForm : public QWidget {
    Q_OBJECT

 public:
    /// The shell that all screens live in; null while there is none.
    static void setShell(WindowShell* shell);
    /// The same, for the screens and their parts.
    static WindowShell* shell();

    /// @p title is the name in the registry.
    WindowForm(QWidget* parent, const QString& title);

    QString getTitle() const { return title_; }

    /// Called when the screen comes up, with its form built and its texts set.
    virtual void windowInEvent();
    /// Called when another screen takes over. Forgets the parameter.
    virtual void windowOutEvent();
    /// Takes what the caller of the screen change has to say to the screen.
    virtual void setParam(QVariant param);
    /// Takes a frame of the device controller that is meant for this screen. What a screen does
    /// not know it ignores.
    virtual void deviceAnswer(const DeviceMessage& message);
    /// Called on the active screen when the settings in force have changed, whoever has changed
    /// them: the controller, a screen, this one among them, or the management service. Brings the
    /// texts up to date, since the language is one of them.
    virtual void settingsChanged(const SettingsChange& change);

    /// Called on the active screen when the device controller or the management service has been
    /// reached, or is no longer.
    virtual void peersChanged() {}

    /// Whether an unattended terminal leaves this screen after the menus' time. Asked when the
    /// screen is about to come up.
    virtual bool timesOut() const { return true; }

    /// Whether an answer of the device controller is waited for, which somebody wants to see: an
    /// unattended terminal does not leave the screen before it has come.
    virtual bool isWaiting() const { return false; }

    /// The management service asks for what the screen's enrol button starts.
    virtual void enrolRequested() {}

    /// The terminal's operating mode has changed while this screen is the active one.
    virtual void workModeChanged() {}

    /// The pixel line from which on a strip of NoticeStrip::kHeight covers nothing that is read on
    /// this screen. By default right below the title of a bar.
    virtual int noticeTop() const { return 66; }

    /// Whether the screen lies above every dialog but its own, which come back after it. For one
    /// that somebody at the door has to see, and that ends by itself.
    virtual bool coversDialogs() const { return false; }

    /// Builds the form if it is not there yet and brings its texts up to date.
    void ensureForm();
    bool isFormBuilt() const { return formBuilt_; }

    void setVisible(bool visible) override;

 protected:
    /// Builds the screen's form; called once.
    virtual void createForm() = 0;
    /// Called after the texts of the form's widgets have been set for a language.
    virtual void scriptsApplied();

    const QVariant& param() const { return param_; }
    void showEvent(QShowEvent* event) override;

 private:
    const QString title_;
    QVariant param_;
    bool formBuilt_ = false;
    int scriptRevision_ = -1;
};
