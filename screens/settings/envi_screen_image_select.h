#pragma once

#include "screens/common/form_screen.h"
#include "screens/common/screen_popup.h"
#include "screens/common/settings_part.h"
#include "ui_envi_screen_image_select.h"

class PictureModel;
class PictureShelf;

/// Choice of the standby screen's picture, by its number.
class EnviScreen_ImageSelect : public FormScreen<Ui::EnviScreen_ImageSelect, SettingsPart> {
    Q_OBJECT

 public:
    EnviScreen_ImageSelect(QWidget* parent, const QString& title);

    void windowInEvent() override;
    void windowOutEvent() override;

 protected:
    void built() override;
    void valueShown() override;

 private:
    void pictureTouched(int number);

    PictureModel* const pictures_;
    PictureShelf* const previews_;
    ScreenPopup popup_;
};
