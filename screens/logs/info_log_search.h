#pragma once

#include "screens/common/form_screen.h"
#include "ui_info_log_search.h"

/// Search for logs.
class Info_LogSearch : public FormScreen<Ui::Info_LogSearch> {
    Q_OBJECT

 public:
    using FormScreen::FormScreen;
};
