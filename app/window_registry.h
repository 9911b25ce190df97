#pragma once

#include <QList>
#include <QObject>
#include <QString>
#include <QVariant>

class WindowForm;

/// All screens in the order of their creation, of which exactly one is visible. GUI thread only.
class WindowRegistry : public QObject {
    Q_OBJECT

 public:
    enum Result {
        kDone = 0,
        kNoSuchWindow = 1,
        kRefused = -1,  ///< changes are switched off, or the window is the active one
    };

    using QObject::QObject;

    void append(WindowForm* window) { windows_.append(window); }
    const QList<WindowForm*>& windows() const { return windows_; }
    /// The first window titled @p title, or null.
    WindowForm* find(const QString& title) const;

    /// Makes the window titled @p title the visible one. Valid @p param is given to it first.
    Result change(const QString& title, const QVariant* param = nullptr);
    void setChangeAllowed(bool allowed) { changeAllowed_ = allowed; }
    bool isChangeAllowed() const { return changeAllowed_; }

    WindowForm* active() const { return active_; }
    /// Position of the active window, -1 before the first change.
    int activeIndex() const { return activeIndex_; }

    /// Deletes every window, the last one first.
    void deleteAll();

 signals:
    /// A window is about to come up.
    void changing(const QString& title);
    /// The window that has come up lies above the others.
    void changed();

 private:
    QList<WindowForm*> windows_;
    WindowForm* active_ = nullptr;
    int activeIndex_ = -1;
    bool changeAllowed_ = true;
};
