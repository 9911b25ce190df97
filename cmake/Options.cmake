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
if(ZEL_SANITIZE)
    target_compile_options(zel_options INTERFACE -fsanitize=${ZEL_SANITIZE} -fno-omit-frame-pointer
        -fno-sanitize-recover=all)
    target_link_options(zel_options INTERFACE -fsanitize=${ZEL_SANITIZE})
endif()

# zel_precompile_qt(TARGET) has TARGET read Qt's headers once instead of once for each of its files.
# Every file includes what it uses all the same.
function(zel_precompile_qt target)
    target_precompile_headers(${target} PRIVATE
        <QtCore/QtCore> <QtGui/QtGui> <QtWidgets/QtWidgets>)
endfunction()
