#pragma once

#include <QWidget>

#include "ui/script_text.h"

class WindowShell;

/// A small sign on the screens at the door: which of the terminal's peers is not reached. Hidden
/// while there is nothing to tell. Touches pass through it.
class PeerSign : public QWidget, public Scripted {
    Q_OBJECT
    Q_PROPERTY(QString textKey READ textKey)

 public:
    explicit PeerSign(QWidget* parent = nullptr);

    /// Shows how things stand. Without the controller nothing works, so that it is told first.
    void setPeers(const WindowShell& shell);
    const QString& textKey() const { return text_.key(); }

    void applyScripts(const Lookup& lookup) override;

 protected:
    void paintEvent(QPaintEvent* event) override;

 private:
    ScriptText text_;
};
