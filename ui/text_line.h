#pragma once

#include <QRgb>
#include <QWidget>

#include "ui/script_text.h"

/// A text in one of the terminal's typographic roles. It gives way to the width that it has.
class TextLine : public QWidget, public Scripted {
    Q_OBJECT
    Q_PROPERTY(QString textKey READ textKey WRITE setTextKey)
    Q_PROPERTY(Role role READ role WRITE setRole)
    Q_PROPERTY(Qt::Alignment alignment READ alignment WRITE setAlignment)

 public:
    enum Role {
        Prompt,        ///< what the person is to do
        Band,          ///< the word on a result's band
        Confirmation,  ///< what has been done
        Name,          ///< a person's name, as it was entered
        IdNumber,      ///< a number that names something, as it was entered
        Caption,       ///< of a value
        Count,         ///< a number to be read from afar
    };
    Q_ENUM(Role)

    explicit TextLine(QWidget* parent = nullptr);

    const QString& textKey() const { return text_.key(); }
    void setTextKey(const QString& key) { text_.setKey(key); }
    const QString& text() const { return text_.text(); }
    /// Replaces the key's text until the key is applied again.
    void setText(const QString& text);
    /// The same with a typography of its own.
    void setScript(const ScriptHandler::Script& script);
    Role role() const { return role_; }
    void setRole(Role role);
    Qt::Alignment alignment() const { return alignment_; }
    void setAlignment(Qt::Alignment alignment);
    /// Another color than the role's.
    void setInk(QRgb ink);

    void applyScripts(const Lookup& lookup) override;

 protected:
    void paintEvent(QPaintEvent* event) override;

 private:
    ScriptText text_;
    Role role_ = Prompt;
    Qt::Alignment alignment_ = Qt::AlignLeft;
    QRgb ink_ = 0;  // of the role
};
