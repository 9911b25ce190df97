#include "screens/logs/info_log_list.h"

#include "ui_info_log_list.h"

Info_logList::Info_logList(QWidget* parent, const QString& title)
    : TitledForm(parent, title, QStringLiteral("info_logSearchWindow")) {}

Info_logList::~Info_logList() = default;

void Info_logList::createForm() {
    ui_ = std::make_unique<Ui::Info_logList>();
    ui_->setupUi(this);
    connectForm(ui_->topBar);
}
