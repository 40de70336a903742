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

# A test runs once a build: the time to optimise it is lost. What it tests keeps its own options.
function(velometer_unoptimised target)
    if(NOT VELOMETER_SANITIZE)
        target_compile_options(${target} PRIVATE -O0)
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
        set_target_properties(velometer_pch_${kind} PROPERTIES UNITY_BUILD OFF)
        target_link_libraries(velometer_pch_${kind} PRIVATE ${${kind}})
        velometer_warnings(velometer_pch_${kind})
        if(kind MATCHES "test$")
            velometer_unoptimised(velometer_pch_${kind})
        endif()
        target_precompile_headers(velometer_pch_${kind} PRIVATE ${PROJECT_SOURCE_DIR}/cmake/pch/${kind}.h)
    endif()
    target_precompile_headers(${target} REUSE_FROM velometer_pch_${kind})
endfunction()

# velometer_layers(TARGET FOLDERS LINKS FILES): TARGET, made of FILES in FOLDERS ("sources/context"), may
# include headers of its own folders and of those of the libraries it links, directly or through them. Each
# of them must be declared already, so that there are no cycles, and each build looks at what is included.
function(velometer_layers target)
    cmake_parse_arguments(arg "" "" "FOLDERS;LINKS;FILES" ${ARGN})
    list(TRANSFORM arg_FOLDERS PREPEND ${PROJECT_SOURCE_DIR}/ OUTPUT_VARIABLE seen)
    foreach(link ${arg_LINKS})
        if(link MATCHES "^velometer_")
            if(NOT TARGET ${link})
                message(FATAL_ERROR "${target} links ${link}, which is not declared above it.")
            endif()
            get_target_property(below ${link} VELOMETER_SEEN)
            if(below)
                list(APPEND seen ${below})
            endif()
        endif()
    endforeach()
    list(REMOVE_DUPLICATES seen)
    set_target_properties(${target} PROPERTIES VELOMETER_SEEN "${seen}" VELOMETER_FILES "${arg_FILES}")

    set(roots ${PROJECT_SOURCE_DIR}/sources ${PROJECT_SOURCE_DIR}/service)
    if(arg_FOLDERS MATCHES "^service")
        list(REVERSE roots)
    endif()
    set(layer ${CMAKE_BINARY_DIR}/layers/${target})
    file(CONFIGURE OUTPUT ${layer}.cmake @ONLY CONTENT
"set(library @target@)
set(links @arg_LINKS@)
set(files @arg_FILES@)
set(roots @roots@)
set(seen @seen@)
")
    add_custom_command(OUTPUT ${layer}.checked
        COMMAND ${CMAKE_COMMAND} -DLAYER=${layer}.cmake -P ${PROJECT_SOURCE_DIR}/cmake/CheckLayers.cmake
        COMMAND ${CMAKE_COMMAND} -E touch ${layer}.checked
        DEPENDS ${layer}.cmake ${PROJECT_SOURCE_DIR}/cmake/CheckLayers.cmake ${arg_FILES}
        COMMENT "Looking at what ${target} includes"
        VERBATIM)
    target_sources(${target} PRIVATE ${layer}.checked)
endfunction()

# velometer_generators(TARGET FILES): has moc and uic look at TARGET when one of FILES needs them. They start a
# process and read every file each time, for nothing where no class has signals.
function(velometer_generators target)
    set(moc OFF)
    foreach(file ${ARGN})
        file(STRINGS ${file} found REGEX "Q_(OBJECT|GADGET|NAMESPACE)" LIMIT_COUNT 1)
        if(found)
            set(moc ON)
            break()
        endif()
    endforeach()
    set(forms ${ARGN})
    list(FILTER forms INCLUDE REGEX "[.]ui$")
    if(forms)
        set_target_properties(${target} PROPERTIES AUTOUIC ON)
    endif()
    set_target_properties(${target} PROPERTIES AUTOMOC ${moc})
endfunction()

# velometer_library(ui/popups LINKS velometer_measurement): the sources of this folder of sources/, and of
# those within it that FOLDERS names, become velometer_ui_popups (of service/: velometer_service_...),
# precompiled as PRECOMPILE says (core). Includes are folder-qualified ("ui/popups/popupbase.h").
function(velometer_library folder)
    cmake_parse_arguments(arg "" "PRECOMPILE" "LINKS;FOLDERS" ${ARGN})
    cmake_path(RELATIVE_PATH CMAKE_CURRENT_SOURCE_DIR BASE_DIRECTORY ${PROJECT_SOURCE_DIR} OUTPUT_VARIABLE root)
    string(REGEX REPLACE "/.*" "" root ${root})
    string(REPLACE "/" "_" target velometer_${folder})
    if(root STREQUAL "service")
        string(REPLACE "/" "_" target velometer_service_${folder})
    endif()
    set(folders ${root}/${folder})
    foreach(inner ${arg_FOLDERS})
        list(APPEND folders ${root}/${folder}/${inner})
    endforeach()
    set(sources "")
    set(headers "")
    foreach(place ${folders})
        file(GLOB found CONFIGURE_DEPENDS
            ${PROJECT_SOURCE_DIR}/${place}/*.cpp ${PROJECT_SOURCE_DIR}/${place}/*.ui)
        list(APPEND sources ${found})
        file(GLOB found CONFIGURE_DEPENDS ${PROJECT_SOURCE_DIR}/${place}/*.h)
        list(APPEND headers ${found})
    endforeach()
    add_library(${target} STATIC ${sources} ${headers})
    set_target_properties(${target} PROPERTIES LINKER_LANGUAGE CXX)
    velometer_generators(${target} ${sources} ${headers})
    target_sources(${target} PUBLIC
        FILE_SET HEADERS BASE_DIRS ${PROJECT_SOURCE_DIR}/${root} FILES ${headers})
    target_link_libraries(${target} PUBLIC ${arg_LINKS})
    velometer_warnings(${target})
    if(NOT arg_PRECOMPILE)
        set(arg_PRECOMPILE core)
    endif()
    velometer_precompile(${target} ${arg_PRECOMPILE})
    velometer_layers(${target} FOLDERS ${folders} LINKS ${arg_LINKS} FILES ${sources} ${headers})
endfunction()

# velometer_program(velometer-cli cli/main PRECOMPILE core LINKS velometer_cli): the program made of the
# sources of that folder, installed with the others.
function(velometer_program target folder)
    cmake_parse_arguments(arg "" "PRECOMPILE" "LINKS" ${ARGN})
    cmake_path(RELATIVE_PATH CMAKE_CURRENT_SOURCE_DIR BASE_DIRECTORY ${PROJECT_SOURCE_DIR} OUTPUT_VARIABLE root)
    string(REGEX REPLACE "/.*" "" root ${root})
    file(GLOB sources CONFIGURE_DEPENDS ${PROJECT_SOURCE_DIR}/${root}/${folder}/*.cpp)
    add_executable(${target} ${sources})
    velometer_generators(${target} ${sources})
    target_link_libraries(${target} PRIVATE ${arg_LINKS})
    velometer_warnings(${target})
    if(arg_PRECOMPILE)
        velometer_precompile(${target} ${arg_PRECOMPILE})
    endif()
    velometer_layers(${target} FOLDERS ${root}/${folder} LINKS ${arg_LINKS} FILES ${sources})
    install(TARGETS ${target} RUNTIME DESTINATION ${CMAKE_INSTALL_BINDIR})
endfunction()

# velometer_lint(engine velometer_data velometer_db): clang-tidy over all sources and headers of these
# targets, as one unit: what they include together is read and matched once, which takes longer than all
# that is written here. Part of the target "lint", beside the build, again only when one of them changed.
# Names in the unnamed namespaces of one unit must differ.
find_program(CLANG_TIDY clang-tidy-19)
mark_as_advanced(CLANG_TIDY)
function(velometer_lint unit)
    if(NOT CLANG_TIDY)
        return()
    endif()
    set(source ${CMAKE_BINARY_DIR}/lint/${unit}.cpp)
    set(text "")
    set(files "")
    set(places "")
    set(generated "")
    set(singles "")
    foreach(target ${ARGN})
        get_target_property(own ${target} VELOMETER_FILES)
        get_target_property(place ${target} BINARY_DIR)
        list(APPEND files ${own})
        get_target_property(moc ${target} AUTOMOC)
        get_target_property(uic ${target} AUTOUIC)
        if(moc OR uic)
            list(APPEND places ${place}/${target}_autogen/include)
            list(APPEND generated ${target}_autogen)
        endif()
        list(FILTER own INCLUDE REGEX "[.]cpp$")
        foreach(file ${own})
            get_source_file_property(alone ${file} TARGET_DIRECTORY ${target} SKIP_UNITY_BUILD_INCLUSION)
            if(alone)
                list(APPEND singles ${file})
                continue()
            endif()
            string(APPEND text "#include \"${file}\" // NOLINT(bugprone-suspicious-include)\n")
        endforeach()
    endforeach()
    file(CONFIGURE OUTPUT ${source} CONTENT "${text}" @ONLY)
    add_library(velometer_lint_${unit} OBJECT EXCLUDE_FROM_ALL ${source})
    set_target_properties(velometer_lint_${unit} PROPERTIES UNITY_BUILD OFF)
    target_include_directories(velometer_lint_${unit} PRIVATE ${places})
    foreach(target ${ARGN})
        get_target_property(links ${target} LINK_LIBRARIES)
        target_link_libraries(velometer_lint_${unit} PRIVATE ${links})
    endforeach()
    velometer_warnings(velometer_lint_${unit})
    add_custom_command(OUTPUT ${source}.clean
        COMMAND ${CLANG_TIDY} --quiet -p ${CMAKE_BINARY_DIR} ${source} ${singles}
        COMMAND ${CMAKE_COMMAND} -E touch ${source}.clean
        DEPENDS ${files} ${source} ${PROJECT_SOURCE_DIR}/.clang-tidy ${generated}
        COMMENT "clang-tidy: ${unit}"
        VERBATIM)
    set_property(GLOBAL APPEND PROPERTY VELOMETER_LINTED ${source}.clean)
endfunction()

# velometer_tests(utils LINKS velometer_utils): one program of all tests of this folder, or of FILES, each
# of which ctest runs alone, in parallel with others.
function(velometer_tests name)
    cmake_parse_arguments(arg "" "PRECOMPILE" "FILES;LINKS" ${ARGN})
    if(NOT arg_PRECOMPILE)
        set(arg_PRECOMPILE test)
    endif()
    if(NOT arg_FILES)
        file(GLOB_RECURSE arg_FILES CONFIGURE_DEPENDS *_test.cpp)
    endif()
    set(program ${name}_tests)
    add_executable(${program} ${arg_FILES})
    set_target_properties(${program} PROPERTIES
        RUNTIME_OUTPUT_DIRECTORY ${CMAKE_BINARY_DIR}/tests AUTOMOC ON UNITY_BUILD OFF)
    velometer_unoptimised(${program})
    target_link_libraries(${program} PRIVATE ${arg_LINKS} velometer_test_support)
    velometer_warnings(${program})
    if(Qt6_VERSION VERSION_GREATER_EQUAL 6.5)
        # Its QTRY_ macros narrow a number of milliseconds within the test's own lines.
        target_compile_options(${program} PRIVATE -Wno-conversion)
    endif()
    velometer_precompile(${program} ${arg_PRECOMPILE})
    foreach(file ${arg_FILES})
        cmake_path(GET file STEM test)
        add_test(NAME ${test} COMMAND ${program} ${test})
        set_tests_properties(${test} PROPERTIES TIMEOUT 120 ENVIRONMENT
            "ASAN_OPTIONS=detect_leaks=1;LSAN_OPTIONS=suppressions=${PROJECT_SOURCE_DIR}/tests/support/lsan.supp;TSAN_OPTIONS=suppressions=${PROJECT_SOURCE_DIR}/tests/support/tsan.supp die_after_fork=0")
    endforeach()
endfunction()
