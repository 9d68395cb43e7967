# How every target of this project is built: language level, warnings, sanitizers, and which
# folders it may include from.
include(GNUInstallDirs)

# klipra_harden(<target>): what turns a mistake in memory into an end at once. The files that are
# opened may come from anybody.
function(klipra_harden target)
    target_compile_options(${target} PRIVATE
        -fstack-protector-strong -fstack-clash-protection
        $<$<STREQUAL:${CMAKE_SYSTEM_PROCESSOR},x86_64>:-fcf-protection>)
    target_compile_definitions(${target} PRIVATE _GLIBCXX_ASSERTIONS)
    target_link_options(${target} PRIVATE -Wl,-z,relro,-z,now)
    # The C library checks sizes only where the compiler optimises; the sanitizers check them all.
    if(NOT KLIPRA_SANITIZE)
        target_compile_options(${target} PRIVATE
            $<$<NOT:$<CONFIG:Debug>>:-U_FORTIFY_SOURCE -D_FORTIFY_SOURCE=2>)
    endif()
endfunction()

# klipra_configure(<target>): language level, warnings, hardening and sanitizers.
function(klipra_configure target)
    target_compile_features(${target} PRIVATE cxx_std_20)
    set_target_properties(${target} PROPERTIES
        CXX_EXTENSIONS OFF
        CXX_VISIBILITY_PRESET hidden
        VISIBILITY_INLINES_HIDDEN ON
        POSITION_INDEPENDENT_CODE ON)
    target_compile_options(${target} PRIVATE
        # gcc takes the signs out of -Wconversion, clang does not.
        -Wall -Wextra -Wpedantic -Wconversion -Wsign-conversion -Wshadow -Wnon-virtual-dtor
        -Woverloaded-virtual $<$<BOOL:${KLIPRA_WERROR}>:-Werror>
        # Cut positions are computed in single precision: no fused operations, so that every
        # machine cuts at the same byte.
        -ffp-contract=off)
    target_compile_definitions(${target} PRIVATE _FILE_OFFSET_BITS=64)
    klipra_harden(${target})
    if(KLIPRA_SANITIZE)
        target_compile_options(${target} PRIVATE
            -fsanitize=${KLIPRA_SANITIZE} -fno-sanitize-recover=all -fno-omit-frame-pointer)
        target_link_options(${target} PRIVATE -fsanitize=${KLIPRA_SANITIZE})
    endif()
endfunction()

# klipra_expose_folder(<target> <PUBLIC|PRIVATE>): lets the target, and with PUBLIC those that link
# it, include the files of this folder as "folder/File.h".
#
# The folder is reached through a link in an include directory of its own, never through the source
# root: a file can include only from the folders that its target links.
function(klipra_expose_folder target scope)
    get_filename_component(folder "${CMAKE_CURRENT_SOURCE_DIR}" NAME)
    set(include_dir "${PROJECT_BINARY_DIR}/include/${folder}")
    file(MAKE_DIRECTORY "${include_dir}")
    file(CREATE_LINK "${CMAKE_CURRENT_SOURCE_DIR}" "${include_dir}/${folder}" SYMBOLIC)
    target_include_directories(${target} ${scope} "${include_dir}")
endfunction()

# klipra_folder(<target> [SHARED] SOURCES <files...> [LINKS <targets...>])
# The library of the current folder.
function(klipra_folder target)
    cmake_parse_arguments(PARSE_ARGV 1 arg "SHARED" "" "SOURCES;LINKS")
    set(type STATIC)
    if(arg_SHARED)
        set(type SHARED)
    endif()
    add_library(${target} ${type} ${arg_SOURCES})
    klipra_configure(${target})
    if(arg_SHARED)
        klipra_find_libraries(${target})
    endif()
    klipra_expose_folder(${target} PUBLIC)
    target_link_libraries(${target} PRIVATE ${arg_LINKS})
endfunction()

# klipra_program(<target> SOURCES <files...> [LINKS <targets...>])
# A program of the current folder; all programs and shared libraries land side by side in bin/.
function(klipra_program target)
    cmake_parse_arguments(PARSE_ARGV 1 arg "" "" "SOURCES;LINKS")
    add_executable(${target} ${arg_SOURCES})
    klipra_configure(${target})
    klipra_expose_folder(${target} PRIVATE)
    target_link_libraries(${target} PRIVATE ${arg_LINKS})
    set_target_properties(${target} PROPERTIES RUNTIME_OUTPUT_DIRECTORY "${PROJECT_BINARY_DIR}/bin")
    klipra_find_libraries(${target})
endfunction()

# klipra_find_libraries(<target>): has a program or library look for the project's shared libraries
# beside itself, as in a build, and in lib/klipra beside its own folder, as in an installation,
# wherever that has been moved to.
#
# The same in both, so that nothing has to be rewritten: CMake would pad what it rewrites with empty
# entries, and an empty entry is the folder that the program happens to be started in.
function(klipra_find_libraries target)
    file(RELATIVE_PATH to_libraries
        "${CMAKE_INSTALL_FULL_BINDIR}" "${CMAKE_INSTALL_FULL_LIBDIR}/klipra")
    set_target_properties(${target} PROPERTIES
        BUILD_WITH_INSTALL_RPATH ON
        INSTALL_RPATH "$ORIGIN;$ORIGIN/${to_libraries}")
endfunction()

# klipra_tests(<target> [THREADS] [ENVIRONMENT <NAME=value>] SOURCES <files...> [LINKS <targets...>])
# The test program of the current folder; each of its tests becomes one of ctest's, which sets the
# environment variable. THREADS marks those that run under the thread sanitizer too: they get the
# label "threads" and are built by the target of that name.
function(klipra_tests target)
    cmake_parse_arguments(PARSE_ARGV 1 arg "THREADS" "ENVIRONMENT" "SOURCES;LINKS")
    add_executable(${target} ${arg_SOURCES})
    klipra_configure(${target})
    target_link_libraries(${target} PRIVATE ${arg_LINKS} GTest::gtest GTest::gmock GTest::gtest_main)
    set(properties TIMEOUT 120)
    if(arg_THREADS)
        list(APPEND properties LABELS threads)
        add_dependencies(threads ${target})
    endif()
    if(arg_ENVIRONMENT)
        list(APPEND properties ENVIRONMENT "${arg_ENVIRONMENT}")
    endif()
    gtest_discover_tests(${target} DISCOVERY_TIMEOUT 60 PROPERTIES ${properties})
endfunction()
