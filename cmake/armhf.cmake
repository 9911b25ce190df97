# The terminal's board: 32-bit ARM with hardware floating point, built on a Debian machine with the
# foreign architecture's packages:
#   dpkg --add-architecture armhf && apt-get update && apt-get install g++-arm-linux-gnueabihf \
#       qtbase5-dev:armhf libpistache-dev:armhf libsqlite3-dev:armhf libhangul-dev:armhf
set(CMAKE_SYSTEM_NAME Linux)
set(CMAKE_SYSTEM_PROCESSOR arm)
set(CMAKE_C_COMPILER arm-linux-gnueabihf-gcc)
set(CMAKE_CXX_COMPILER arm-linux-gnueabihf-g++)
set(CMAKE_LIBRARY_ARCHITECTURE arm-linux-gnueabihf)
set(CMAKE_FIND_ROOT_PATH /usr/lib/arm-linux-gnueabihf /usr/include/arm-linux-gnueabihf)
set(CMAKE_FIND_ROOT_PATH_MODE_PROGRAM NEVER)
set(ENV{PKG_CONFIG_LIBDIR} /usr/lib/arm-linux-gnueabihf/pkgconfig:/usr/share/pkgconfig)
