#pragma once

#include "cloud/parameters.h"

/// Makes the reports to the management service out of the controller's records. Pictures are read
/// from the device's image folder; one that is not there, is larger than a report may be or leads
/// elsewhere, by its name or as a link, is left out.
namespace event_reports {

FR21_Parameter accessEvent(const GUI_LOGDATA& event);
Parameter_UserData enrolledUser(const info_s& info);
/// @p picture is a file name.
FR51_Parameter visitor(const QString& picture);

}  // namespace event_reports
