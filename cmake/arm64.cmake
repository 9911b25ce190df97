# 64-bit ARM.
set(TRIPLET aarch64-linux-gnu)
set(PROCESSOR aarch64)
include(${CMAKE_CURRENT_LIST_DIR}/debian_cross.cmake)
