# What every target of the project is compiled with. Targets get it through zel_base.
add_library(zel_options INTERFACE)
target_include_directories(zel_options INTERFACE ${PROJECT_SOURCE_DIR})
target_compile_options(zel_options INTERFACE
    -Wall -Wextra -Wpedantic -Wshadow -Wnon-virtual-dtor -Woverloaded-virtual -Wcast-align
    $<$<BOOL:${ZEL_WERROR}>:-Werror>)
target_compile_definitions(zel_options INTERFACE
    QT_NO_CAST_FROM_ASCII QT_NO_CAST_TO_ASCII QT_NO_CAST_FROM_BYTEARRAY
    QT_NO_URL_CAST_FROM_STRING QT_STRICT_ITERATORS
    QT_DISABLE_DEPRECATED_BEFORE=0x050E00)
# On 32-bit boards, too, the HTTP library counts file offsets in 64 bits, and has what is compiled
# here from its headers look into records that hold them.
if(CMAKE_SIZEOF_VOID_P EQUAL 4)
    target_compile_definitions(zel_options INTERFACE _FILE_OFFSET_BITS=64)
endif()
if(ZEL_SANITIZE)
    target_compile_options(zel_options INTERFACE -fsanitize=${ZEL_SANITIZE} -fno-omit-frame-pointer
        -fno-sanitize-recover=all)
    target_link_options(zel_options INTERFACE -fsanitize=${ZEL_SANITIZE})
endif()
# Relocations of the program's own tables in a few kilobytes instead of half a megabyte, all of which
# is read at each start.
include(CheckLinkerFlag)
check_linker_flag(CXX LINKER:-z,pack-relative-relocs ZEL_PACKS_RELOCATIONS)
if(ZEL_PACKS_RELOCATIONS)
    target_link_options(zel_options INTERFACE LINKER:-z,pack-relative-relocs)
endif()
# The fuzzer has to see which way its inputs take through the libraries, not only through its driver.
option(ZEL_FUZZ "Build the fuzz targets for libFuzzer; needs clang" OFF)
if(ZEL_FUZZ)
    target_compile_options(zel_options INTERFACE -fsanitize=fuzzer-no-link)
endif()

# Qt's headers, precompiled once for the product and once for the tests, which take Qt Test and Qt
# Network in as well. A target that reads one of them must be compiled as its owner is, definitions
# of the Qt modules included, or the compiler says so. Every file includes what it uses all the same.
file(WRITE ${CMAKE_BINARY_DIR}/qt_headers.cpp.new "")
file(COPY_FILE ${CMAKE_BINARY_DIR}/qt_headers.cpp.new ${CMAKE_BINARY_DIR}/qt_headers.cpp ONLY_IF_DIFFERENT)
function(zel_add_precompiled_qt name)
    cmake_parse_arguments(ARG "" "" "LIBRARIES;HEADERS" ${ARGN})
    add_library(${name} OBJECT ${CMAKE_BINARY_DIR}/qt_headers.cpp)
    target_link_libraries(${name} PRIVATE zel_options ${ARG_LIBRARIES})
    target_precompile_headers(${name} PRIVATE ${ARG_HEADERS})
    set_target_properties(${name} PROPERTIES AUTOMOC OFF AUTOUIC OFF)
endfunction()

# zel_precompile_qt(TARGET) has TARGET read Qt's headers once instead of once for each of its files.
function(zel_precompile_qt target)
    if(NOT TARGET zel_qt_headers)
        zel_add_precompiled_qt(zel_qt_headers LIBRARIES Qt5::Widgets Qt5::Network
            HEADERS <QtCore/QtCore> <QtGui/QtGui> <QtWidgets/QtWidgets> <QtNetwork/QtNetwork>)
    endif()
    target_link_libraries(${target} PRIVATE Qt5::Widgets Qt5::Network)
    target_precompile_headers(${target} REUSE_FROM zel_qt_headers)
endfunction()
