#pragma once

/// The version of this program and of what is built along with it: that of the project's
/// CMakeLists.txt.
const char* programVersion();
