# A board's architecture, built on a Debian machine with that architecture's packages beside its own;
# tools/cross.sh makes a root that has them. Included by a file that has set TRIPLET and PROCESSOR.
set(CMAKE_SYSTEM_NAME Linux)
set(CMAKE_SYSTEM_PROCESSOR ${PROCESSOR})
set(CMAKE_C_COMPILER ${TRIPLET}-gcc)
set(CMAKE_CXX_COMPILER ${TRIPLET}-g++)
# Runs what has been built, tests for instance, on the machine that builds it.
set(CMAKE_CROSSCOMPILING_EMULATOR qemu-${PROCESSOR}-static)
set(CMAKE_LIBRARY_ARCHITECTURE ${TRIPLET})
set(CMAKE_FIND_ROOT_PATH_MODE_PROGRAM NEVER)
set(ENV{PKG_CONFIG_LIBDIR} /usr/lib/${TRIPLET}/pkgconfig:/usr/share/pkgconfig)
