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
    void showPicture();

    PictureShelf* const previews_;
};
