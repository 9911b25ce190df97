#pragma once

#include "ui/script_text.h"
#include "ui/widget_button.h"

/// The button of an attendance event: a picture over its name.
class WorkButton : public WidgetButton, public Scripted {
    Q_OBJECT
    Q_PROPERTY(QString textKey READ textKey WRITE setTextKey)
    Q_PROPERTY(QString pictureName READ pictureName WRITE setPictureName)

 public:
    explicit WorkButton(QWidget* parent = nullptr);

    const QString& textKey() const { return text_.key(); }
    void setTextKey(const QString& key) { text_.setKey(key); }
    /// "in" stands for in.png, in_pressed.png and in_disabled.png in /usr/img.
    const QString& pictureName() const { return picture_; }
    void setPictureName(const QString& name) { picture_ = name; }

    void applyScripts(const Lookup& lookup) override;

 protected:
    void paintEvent(QPaintEvent* event) override;

 private:
    ScriptText text_;
    QString picture_;
};
