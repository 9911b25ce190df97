#include "screens/settings/envi_face_recog.h"

#include "link/command_code.h"
#include "ui/segments.h"
#include "ui/toggle.h"

void EnviFaceRecog::built() {
    constexpr std::uint32_t kLowest = 1;
    slice(&_gui_menu_::face, command::SaveFaceSettings, command::FaceSettingsSaved);
    bind(ui_->securityLevel, &FaceBlock::securityLevel, kPlain, kLowest);
    bind(ui_->cameraToggle, &FaceBlock::camera);
    bind(ui_->saveThumbnailToggle, &FaceBlock::saveThumbnail, kInverted);
    bind(ui_->useThumbnailToggle, &FaceBlock::useThumbnail, kInverted);
    bind(ui_->saveRefusedToggle, &FaceBlock::saveUnregistered, kInverted);
}
