#pragma once

#include "screens/common/form_screen.h"
#include "screens/common/settings_part.h"
#include "ui_envi_screen_stay_view.h"

class PictureShelf;

/// What the standby screen shows.
class EnviScreen_StayView : public FormScreen<Ui::EnviScreen_StayView, SettingsPart> {
    Q_OBJECT

 public:
    EnviScreen_StayView(QWidget* parent, const QString& title);

    void windowOutEvent() override;

 protected:
    void built() override;
    void valueShown() override;
    void returned(int picture) override;

 private:
    void showClock();
    void showPicture();

    PictureShelf* const previews_;
    QString clockShown_;    // its time and font
    QString pictureShown_;  // its folder and name
    bool brokenShown_ = false;
};
