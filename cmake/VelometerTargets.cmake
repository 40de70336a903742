# One place for the options of every target; a folder's own CMakeLists.txt is a line or two.

# Warnings, definitions and sanitizers that hold for everything written here.
function(velometer_warnings target)
    target_compile_options(${target} PRIVATE
        -Wall -Wextra -Wpedantic -Wshadow -Wconversion
        $<$<BOOL:${VELOMETER_WERROR}>:-Werror>)
    target_compile_definitions(${target} PRIVATE
        QT_NO_CAST_FROM_ASCII QT_NO_CAST_TO_ASCII QT_NO_FOREACH QT_NO_KEYWORDS
        QT_DISABLE_DEPRECATED_BEFORE=0x060400
        VELOMETER_VERSION="${PROJECT_VERSION}")
    if(VELOMETER_SANITIZE)
        target_compile_options(${target} PRIVATE
            -fsanitize=${VELOMETER_SANITIZE} -fno-omit-frame-pointer -fno-sanitize-recover=all)
        if(VELOMETER_SANITIZE STREQUAL "thread")
            # The thread sanitizer does not model fences, which Boost.Asio's headers use.
            target_compile_options(${target} PRIVATE -Wno-tsan)
        endif()
        target_link_options(${target} PUBLIC -fsanitize=${VELOMETER_SANITIZE})
    endif()
endfunction()

# velometer_library(context LINKS velometer_platform): all sources of this folder, and of those named
# after FOLDERS, become velometer_context. Includes are folder-qualified ("context/locationhelper.h"); a folder sees only
# what it links, because every folder's headers are handed on through a directory of its own.
function(velometer_library folder)
    cmake_parse_arguments(arg "" "" "LINKS;FOLDERS" ${ARGN})
    set(patterns)
    foreach(place . ${arg_FOLDERS})
        foreach(suffix cpp h ui)
            list(APPEND patterns ${CMAKE_CURRENT_SOURCE_DIR}/${place}/*.${suffix})
        endforeach()
    endforeach()
    file(GLOB sources CONFIGURE_DEPENDS ${patterns})
    add_library(velometer_${folder} STATIC ${sources})
    set(view ${CMAKE_BINARY_DIR}/include/${folder})
    file(MAKE_DIRECTORY ${view})
    file(CREATE_LINK ${CMAKE_CURRENT_SOURCE_DIR} ${view}/${folder} SYMBOLIC)
    target_include_directories(velometer_${folder} PUBLIC ${view})
    target_link_libraries(velometer_${folder} PUBLIC ${arg_LINKS})
    velometer_warnings(velometer_${folder})
endfunction()

# velometer_test(clock_test LINKS velometer_utils): one Qt Test program from clock_test.cpp, run by
# ctest without a display, without the machine's modem and connections, and with settings and data of
# its own.
function(velometer_test name)
    cmake_parse_arguments(arg "" "" "SOURCES;LINKS" ${ARGN})
    if(NOT arg_SOURCES)
        set(arg_SOURCES ${name}.cpp)
    endif()
    add_executable(${name} ${arg_SOURCES})
    set_target_properties(${name} PROPERTIES RUNTIME_OUTPUT_DIRECTORY ${CMAKE_BINARY_DIR}/tests)
    target_link_libraries(${name} PRIVATE ${arg_LINKS} velometer_test_support Qt6::Test)
    velometer_warnings(${name})
    add_test(NAME ${name} COMMAND ${name})
    set(home ${CMAKE_BINARY_DIR}/tests/home/${name})
    file(MAKE_DIRECTORY ${home})
    set_tests_properties(${name} PROPERTIES TIMEOUT 120 ENVIRONMENT
        "QT_QPA_PLATFORM=offscreen;LC_ALL=C.UTF-8;HOME=${home};XDG_CONFIG_HOME=${home}/config;XDG_DATA_HOME=${home}/data;XDG_CACHE_HOME=${home}/cache;XDG_CONFIG_DIRS=${home}/none;DBUS_SYSTEM_BUS_ADDRESS=unix:path=${home}/none;ASAN_OPTIONS=detect_leaks=1;LSAN_OPTIONS=suppressions=${CMAKE_SOURCE_DIR}/tests/support/lsan.supp;TSAN_OPTIONS=suppressions=${CMAKE_SOURCE_DIR}/tests/support/tsan.supp")
endfunction()
