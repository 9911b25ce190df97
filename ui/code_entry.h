#pragma once

#include "ui/input_field.h"

/// The entry of an 11-digit customer number: one cell for each digit, in groups of 3, 4 and 4,
/// with a caption and the count below. 432x116.
class CodeEntry : public InputField {
    Q_OBJECT
    Q_PROPERTY(QString captionKey READ captionKey WRITE setCaptionKey)

 public:
    explicit CodeEntry(QWidget* parent = nullptr);

    const QString& captionKey() const { return caption_.key(); }
    void setCaptionKey(const QString& key) { caption_.setKey(key); }
    /// Whether all digits are there.
    bool isComplete() const { return text().size() == maxLength(); }

    void applyScripts(const Lookup& lookup) override;
    QSize sizeHint() const override;

 protected:
    void paintEvent(QPaintEvent* event) override;

 private:
    ScriptText caption_;
};
