#include "screens/settings/envi_face_recog.h"

#include "ui_envi_face_recog.h"

EnviFaceRecog::EnviFaceRecog(QWidget* parent, const QString& title)
    : TitledForm(parent, title, QStringLiteral("enviWindow")) {}

EnviFaceRecog::~EnviFaceRecog() = default;

void EnviFaceRecog::createForm() {
    ui_ = std::make_unique<Ui::EnviFaceRecog>();
    ui_->setupUi(this);
    connectForm(ui_->topBar);
}
