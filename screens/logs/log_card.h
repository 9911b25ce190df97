#pragma once

#include <functional>

#include "link/device_records.h"
#include "ui/dismissible_overlay.h"
#include "ui/script_handler.h"

class FactList;
class PictureShelf;
class ThumbnailView;

/// All that a log says, with the pictures of both cameras side by side. Any touch closes it.
class LogCard : public DismissibleOverlay {
    Q_OBJECT

 public:
    using Text = std::function<ScriptHandler::Script(const QString& key)>;

    /// @p picturesShown says whether people's pictures are shown.
    LogCard(QWidget* owner, const GUI_LOGDATA& log, bool picturesShown, const Text& text);

 protected:
    int arrange() override;
    bool closesAt(const QPoint&) const override { return true; }

 private:
    void showPicture(ThumbnailView* view, const QString& name);

    PictureShelf* shelf_;
    ThumbnailView* infrared_;
    ThumbnailView* visible_;
    FactList* facts_;
};
