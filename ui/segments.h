#pragma once

#include "ui/choice.h"

/// The numbers from 1 on side by side, of which one holds, with a word below either end that says
/// what lies in that direction. 428x86.
class Segments : public Choice {
    Q_OBJECT
    Q_PROPERTY(int segments READ count WRITE setSegments)
    Q_PROPERTY(QString leftKey READ leftKey WRITE setLeftKey)
    Q_PROPERTY(QString rightKey READ rightKey WRITE setRightKey)

 public:
    explicit Segments(QWidget* parent = nullptr);

    void setSegments(int count);
    const QString& leftKey() const { return left_.key(); }
    void setLeftKey(const QString& key) { left_.setKey(key); }
    const QString& rightKey() const { return right_.key(); }
    void setRightKey(const QString& key) { right_.setKey(key); }

    void applyScripts(const Lookup& lookup) override;
    QSize sizeHint() const override;

 protected:
    void paintEvent(QPaintEvent* event) override;

 private:
    ScriptText left_;
    ScriptText right_;
};
