# 32-bit ARM with hardware floating point.
set(TRIPLET arm-linux-gnueabihf)
set(PROCESSOR arm)
include(${CMAKE_CURRENT_LIST_DIR}/debian_cross.cmake)
