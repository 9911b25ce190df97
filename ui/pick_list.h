#pragma once

#include <QVector>

#include "ui/dismissible_overlay.h"
#include "ui/scripted.h"

class ScrollList;

/// The choices of a Combo as a list in the middle of the window. Scrolls when there are more than
/// eight.
class PickList : public DismissibleOverlay, public Scripted {
    Q_OBJECT

 public:
    /// Covers the window of @p owner once shown; @p current is the chosen item, -1 for none.
    PickList(QWidget* owner, const ScriptHandler::Script& title,
             const QVector<ScriptHandler::Script>& items, int current);

    /// What it offers is no longer what its owner holds: it closes.
    void applyScripts(const Lookup&) override { hide(); }

 signals:
    /// An item was touched; the list is hidden already.
    void picked(int index);

 protected:
    int arrange() override { return cardHeight_; }
    void showEvent(QShowEvent* event) override;

 private:
    ScrollList* list_;
    QWidget* chosen_ = nullptr;
    int cardHeight_;
};
