#include "base/version.h"

const char* programVersion() {
    return ZEL_VERSION;
}
