#pragma once

#include <QDate>

#include "link/device_records.h"
#include "screens/common/device_request.h"
#include "screens/common/form_screen.h"
#include "screens/common/screen_popup.h"
#include "ui_info_log_search.h"

/// What the logs that are wanted have in common. The controller counts them; the list of them
/// follows when there are any.
class Info_LogSearch : public FormScreen<Ui::Info_LogSearch> {
    Q_OBJECT

 public:
    Info_LogSearch(QWidget* parent, const QString& title);

    /// With true as the parameter what was entered stays; otherwise all logs are wanted.
    void windowInEvent() override;
    void deviceAnswer(const DeviceMessage& message) override;
    /// @p count logs match.
    void UpdateUserLogCount(quint32 count);

 public slots:
    void searchButtonTouch();

 protected:
    void built() override;

 private:
    /// Take over what was entered; the number of a popup that says what is wrong, or -1.
    int setUserId(const QString& text);
    int setDate(const QString& from, const QString& to);
    void setPeriod(int period) { query_.period = static_cast<quint8>(period); }
    void setViewType(int viewType) { query_.viewType = static_cast<quint8>(viewType); }
    void setAuthMethod(int choice);
    void periodChosen();
    void forget();

    DeviceRequest request_{this};
    ScreenPopup popup_;
    GUI_USERLOG query_{};
};
