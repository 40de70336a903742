# One place for the options of every target; a folder's own CMakeLists.txt is a line or two.

# Warnings, definitions and sanitizers that hold for everything written here.
function(velometer_warnings target)
    target_compile_options(${target} PRIVATE
        -Wall -Wextra -Wpedantic -Wshadow -Wconversion
        # Qt Test tells every target where it is built, in macros of its own headers. Nothing here asks,
        # and with them no two programs could share what is precompiled.
        -UQT_TESTCASE_BUILDDIR -UQT_TESTCASE_SOURCEDIR
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

# velometer_precompile(TARGET KIND): TARGET starts from what cmake/pch/KIND.h includes, which is compiled
# once for all that name the same kind. The compiler takes it for those alone that set the same options
# (hence one list of them in velometer_warnings) and link at least the modules named here.
function(velometer_precompile target kind)
    if(NOT TARGET velometer_pch_${kind})
        set(core Qt6::Core Qt6::Network)
        set(ui ${core} Qt6::DBus Qt6::Positioning Qt6::Sql Qt6::Widgets)
        set(test ${core} Qt6::Test)
        set(uitest ${ui} Qt6::Test)
        set(service Qt6::Core Qt6::Sql velometer_asio)
        set(source ${CMAKE_BINARY_DIR}/pch/${kind}.cpp)
        file(CONFIGURE OUTPUT ${source} CONTENT "// Nothing but what is precompiled.\n")
        add_library(velometer_pch_${kind} OBJECT ${source})
        set_target_properties(velometer_pch_${kind} PROPERTIES AUTOMOC OFF AUTOUIC OFF AUTORCC OFF)
        target_link_libraries(velometer_pch_${kind} PRIVATE ${${kind}})
        velometer_warnings(velometer_pch_${kind})
        target_precompile_headers(velometer_pch_${kind} PRIVATE ${PROJECT_SOURCE_DIR}/cmake/pch/${kind}.h)
    endif()
    target_precompile_headers(${target} REUSE_FROM velometer_pch_${kind})
endfunction()

# velometer_library(context LINKS velometer_platform): all sources of this folder, and of those named
# after FOLDERS, become velometer_context, precompiled as PRECOMPILE says (core). Includes are folder-qualified ("context/locationhelper.h"); a folder sees only
# what it links, because every folder's headers are handed on through a directory of its own.
function(velometer_library folder)
    cmake_parse_arguments(arg "" "PRECOMPILE" "LINKS;FOLDERS" ${ARGN})
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
    if(NOT arg_PRECOMPILE)
        set(arg_PRECOMPILE core)
    endif()
    velometer_precompile(velometer_${folder} ${arg_PRECOMPILE})
endfunction()

# velometer_test(clock_test LINKS velometer_utils): one Qt Test program from clock_test.cpp, run by
# ctest without a display, without the machine's modem and connections, and with settings and data of
# its own.
function(velometer_test name)
    cmake_parse_arguments(arg "" "PRECOMPILE" "SOURCES;LINKS" ${ARGN})
    if(NOT arg_PRECOMPILE)
        set(arg_PRECOMPILE test)
    endif()
    if(NOT arg_SOURCES)
        set(arg_SOURCES ${name}.cpp)
    endif()
    add_executable(${name} ${arg_SOURCES})
    set_target_properties(${name} PROPERTIES RUNTIME_OUTPUT_DIRECTORY ${CMAKE_BINARY_DIR}/tests)
    target_link_libraries(${name} PRIVATE ${arg_LINKS} velometer_test_support Qt6::Test)
    velometer_warnings(${name})
    velometer_precompile(${name} ${arg_PRECOMPILE})
    add_test(NAME ${name} COMMAND ${name})
    set(home ${CMAKE_BINARY_DIR}/tests/home/${name})
    file(MAKE_DIRECTORY ${home})
    set_tests_properties(${name} PROPERTIES TIMEOUT 120 ENVIRONMENT
        "QT_QPA_PLATFORM=offscreen;LC_ALL=C.UTF-8;HOME=${home};XDG_CONFIG_HOME=${home}/config;XDG_DATA_HOME=${home}/data;XDG_CACHE_HOME=${home}/cache;XDG_CONFIG_DIRS=${home}/none;DBUS_SYSTEM_BUS_ADDRESS=unix:path=${home}/none;ASAN_OPTIONS=detect_leaks=1;LSAN_OPTIONS=suppressions=${CMAKE_SOURCE_DIR}/tests/support/lsan.supp;TSAN_OPTIONS=suppressions=${CMAKE_SOURCE_DIR}/tests/support/tsan.supp")
endfunction()
