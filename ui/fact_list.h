#pragma once

#include <QStringList>
#include <QVector>
#include <QWidget>

#include "ui/script_text.h"

/// A card of captions, each with a value beside it, or below it on as many lines as it takes when
/// both do not fit into one. A value is shown letter by letter; a caption without one is left out.
class FactList : public QWidget, public Scripted {
    Q_OBJECT
    Q_PROPERTY(QStringList captionKeys READ captionKeys WRITE setCaptionKeys)

 public:
    explicit FactList(QWidget* parent = nullptr);

    QStringList captionKeys() const;
    /// The script keys of the captions; none has a value at first.
    void setCaptionKeys(const QStringList& keys);
    /// The value of the caption number @p fact; empty for none.
    void setValue(int fact, const QString& value);
    QString value(int fact) const { return facts_.at(fact).value; }
    /// The color behind the facts.
    void setGround(QRgb ground);

    /// Pixels that they take in such a width.
    int heightFor(int width) const;
    QSize sizeHint() const override;
    void applyScripts(const Lookup& lookup) override;

 protected:
    void paintEvent(QPaintEvent* event) override;

 private:
    struct Fact {
        ScriptText caption;
        QString value;
    };
    /// Of a fact in a line of @p width: 0 when the value stands beside the caption.
    int linesBelow(const Fact& fact, int width) const;
    ScriptHandler::Script valueText(const Fact& fact) const;

    QVector<Fact> facts_;
    QRgb ground_;
};
