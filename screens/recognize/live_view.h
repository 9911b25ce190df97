#pragma once

#include <memory>

#include "app/window_form.h"

namespace Ui {
class LiveView;
}

/// The live view of the camera.
class LiveView : public WindowForm {
    Q_OBJECT

 public:
    LiveView(QWidget* parent, const QString& title);
    ~LiveView() override;

    /// To the administrator's menu, past the password if one is set.
    void homeButtonTouch();

 protected:
    void createForm() override;

 private:
    std::unique_ptr<Ui::LiveView> ui_;
};
