#include "screens/facesearch/fsv_output.h"

#include <cstdarg>
#include <cstdio>

Q_LOGGING_CATEGORY(faceSearchLog, "zel.facesearch", QtInfoMsg)

void fsvPrint(const char* format, ...) {
    std::va_list arguments;
    va_start(arguments, format);
    std::vprintf(format, arguments);
    va_end(arguments);
    std::fflush(stdout);
}
