#include "cloud/cloud_log.h"

Q_LOGGING_CATEGORY(cloudLog, "zel.cloud", QtInfoMsg)
