#include "screens/logs/info_log_search.h"

#include "ui_info_log_search.h"

Info_LogSearch::Info_LogSearch(QWidget* parent, const QString& title)
    : TitledForm(parent, title, QStringLiteral("info_readerWindow")) {}

Info_LogSearch::~Info_LogSearch() = default;

void Info_LogSearch::createForm() {
    ui_ = std::make_unique<Ui::Info_LogSearch>();
    ui_->setupUi(this);
    connectForm(ui_->topBar);
}
