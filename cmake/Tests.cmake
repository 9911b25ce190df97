find_package(Qt5 5.15 REQUIRED COMPONENTS Test)

set(zel_test_environment "QT_QPA_PLATFORM=offscreen;LC_ALL=C.UTF-8;TZ=Asia/Seoul;QT_LOGGING_RULES=zel.*.debug=false;LSAN_OPTIONS=suppressions=${PROJECT_SOURCE_DIR}/tests/lsan.supp:print_suppressions=0")

# What runs a test, and whom as; a board's program behind it wants an emulator.
set(ZEL_TEST_RUNNER ${PROJECT_SOURCE_DIR}/tests/support/unprivileged.sh)
set(zel_program_runner ${ZEL_TEST_RUNNER} ${CMAKE_CROSSCOMPILING_EMULATOR})

# Tests of what comes from outside (frames, requests, files), marked SANITIZE, also run under the
# sanitizers; this target builds just those.
add_custom_target(zel_sanitized_tests)

zel_add_precompiled_qt(zel_test_headers LIBRARIES Qt5::Test Qt5::Widgets Qt5::Network
    HEADERS <QtCore/QtCore> <QtGui/QtGui> <QtWidgets/QtWidgets> <QtNetwork/QtNetwork> <QtTest/QtTest>)

# zel_add_test(NAME [SANITIZE] LIBRARIES lib... [SOURCES file...]) builds NAME.cpp as a test that
# runs without a display, in a fixed locale. Each test gets the staged device root's path in
# ZEL_STAGED_ROOT; it copies or links what it needs and never writes there. One of screens and the
# simulated controller can derive from what is in support.
function(zel_add_test name)
    cmake_parse_arguments(ARG "SANITIZE" "" "LIBRARIES;SOURCES" ${ARGN})
    add_executable(${name} ${name}.cpp ${ARG_SOURCES})
    if(zel_controller_sim IN_LIST ARG_LIBRARIES AND ARG_LIBRARIES MATCHES zel_screens)
        list(PREPEND ARG_LIBRARIES zel_test_support)
    endif()
    if(ZEL_SANITIZE STREQUAL thread)
        target_sources(${name} PRIVATE support/tsan_qt.cpp)
    endif()
    target_link_libraries(${name} PRIVATE ${ARG_LIBRARIES} Qt5::Test Qt5::Widgets Qt5::Network)
    target_precompile_headers(${name} REUSE_FROM zel_test_headers)
    set_target_properties(${name} PROPERTIES RUNTIME_OUTPUT_DIRECTORY ${CMAKE_BINARY_DIR}/tests)
    target_compile_definitions(${name} PRIVATE ZEL_SOURCE_DIR="${PROJECT_SOURCE_DIR}"
        ZEL_BINARY_DIR="${CMAKE_BINARY_DIR}" ZEL_STAGED_ROOT="${ZEL_STAGED_ROOT}")
    add_dependencies(${name} zel_data)
    add_test(NAME ${name} COMMAND ${zel_program_runner} $<TARGET_FILE:${name}>)
    set_tests_properties(${name} PROPERTIES TIMEOUT 120
        ENVIRONMENT "${zel_test_environment}")
    if(ARG_SANITIZE)
        set_tests_properties(${name} PROPERTIES LABELS sanitize)
        add_dependencies(zel_sanitized_tests ${name})
    endif()
endfunction()

# zel_add_fuzz_target(NAME [TERMINAL] MADE_UP n LIBRARIES lib...) builds fuzz/NAME.cpp. With ZEL_FUZZ
# (clang) it is a libFuzzer program for tools/fuzz.sh; otherwise a test over its corpus and n made-up
# inputs, under the sanitizers too unless it is one of the whole TERMINAL, which takes long to build.
add_custom_target(zel_fuzz_targets)
function(zel_add_fuzz_target name)
    cmake_parse_arguments(ARG "TERMINAL" "MADE_UP" "LIBRARIES" ${ARGN})
    add_executable(${name} fuzz/${name}.cpp fuzz/fuzz_input.cpp)
    target_link_libraries(${name} PRIVATE ${ARG_LIBRARIES})
    set_target_properties(${name} PROPERTIES RUNTIME_OUTPUT_DIRECTORY ${CMAKE_BINARY_DIR}/tests)
    add_dependencies(${name} zel_data)
    add_dependencies(zel_fuzz_targets ${name})
    if(ZEL_FUZZ)
        target_compile_options(${name} PRIVATE -fsanitize=fuzzer)
        target_link_options(${name} PRIVATE -fsanitize=fuzzer)
        return()
    endif()
    target_sources(${name} PRIVATE fuzz/fuzz_driver.cpp)
    add_test(NAME ${name} COMMAND
        ${zel_program_runner} $<TARGET_FILE:${name}> ${ARG_MADE_UP} ${CMAKE_CURRENT_SOURCE_DIR}/fuzz/corpus/${name})
    set_tests_properties(${name} PROPERTIES TIMEOUT 120 ENVIRONMENT "${zel_test_environment}")
    if(NOT ARG_TERMINAL)
        set_tests_properties(${name} PROPERTIES LABELS sanitize)
        add_dependencies(zel_sanitized_tests ${name})
    endif()
endfunction()
