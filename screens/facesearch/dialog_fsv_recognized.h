#pragma once

#include <QVector>

#include "screens/facesearch/face_search_records.h"
#include "ui/dialog_overlay.h"
#include "ui/visible_timer.h"

class FaceFact;
class LabelButton;
class TextLine;

/// The popup that tells who a face-search server takes somebody for: name, position, departments,
/// confidence. It closes by itself after 5 seconds.
class DialogFsvRecognized : public DialogOverlay {
    Q_OBJECT

 public:
    /// Covers @p screen.
    explicit DialogFsvRecognized(QWidget* screen);

    /// Shows @p face in place of what was shown, while the screen is up; its time begins anew.
    void tell(const FaceInfoRecord& face);

 protected:
    int arrange() override;
    void opened() override;
    void showEvent(QShowEvent* event) override;

 private:
    static constexpr int kDepartments = 4;

    TextLine* title_;
    FaceFact* name_;
    FaceFact* position_;
    FaceFact* departments_[kDepartments];
    FaceFact* confidence_;
    LabelButton* confirm_;
    LabelButton* cancel_;
    VisibleTimer time_{this};
};
