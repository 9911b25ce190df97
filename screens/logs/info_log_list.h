#pragma once

#include "screens/common/form_screen.h"
#include "ui_info_log_list.h"

/// The logs that were found.
class Info_logList : public FormScreen<Ui::Info_logList> {
    Q_OBJECT

 public:
    using FormScreen::FormScreen;
};
