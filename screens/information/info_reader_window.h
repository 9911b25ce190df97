#pragma once

#include "screens/common/form_screen.h"
#include "ui_info_reader_window.h"

/// What this terminal is, and the way to all other information.
class Info_ReaderWindow : public FormScreen<Ui::Info_ReaderWindow> {
    Q_OBJECT

 public:
    using FormScreen::FormScreen;
};
