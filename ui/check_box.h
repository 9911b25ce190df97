#pragma once

#include "ui/script_text.h"
#include "ui/widget_button.h"

/// A box to tick, with its label. The whole widget takes touches: the box with 10 pixels around
/// it, and the label.
class CheckBox : public WidgetButton, public Scripted {
    Q_OBJECT
    Q_PROPERTY(QString textKey READ textKey WRITE setTextKey)
    Q_PROPERTY(bool checked READ isChecked WRITE setChecked NOTIFY toggled)

 public:
    explicit CheckBox(QWidget* parent = nullptr);

    const QString& textKey() const { return text_.key(); }
    void setTextKey(const QString& key) { text_.setKey(key); }
    const QString& text() const { return text_.text(); }
    bool isChecked() const { return checked_; }
    void setChecked(bool checked);

    void applyScripts(const Lookup& lookup) override;
    QSize sizeHint() const override;

 signals:
    void toggled(bool checked);

 protected:
    void paintEvent(QPaintEvent* event) override;

 private:
    ScriptText text_;
    bool checked_ = false;
};
