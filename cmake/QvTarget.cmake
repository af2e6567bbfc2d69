# Settings shared by all targets of this tree: language level, warnings, sanitizers, output folders, and the library.

set(CMAKE_CXX_STANDARD 20)
set(CMAKE_CXX_STANDARD_REQUIRED ON)
set(CMAKE_CXX_EXTENSIONS OFF)
set(CMAKE_CXX_VISIBILITY_PRESET hidden)
set(CMAKE_VISIBILITY_INLINES_HIDDEN ON)
set(CMAKE_EXPORT_COMPILE_COMMANDS ON)
set(CMAKE_RUNTIME_OUTPUT_DIRECTORY ${PROJECT_BINARY_DIR}/bin)
set(CMAKE_LIBRARY_OUTPUT_DIRECTORY ${PROJECT_BINARY_DIR}/bin)
set(CMAKE_ARCHIVE_OUTPUT_DIRECTORY ${PROJECT_BINARY_DIR}/lib)
# Programs find the library beside themselves, as on Windows.
set(CMAKE_BUILD_RPATH_USE_ORIGIN ON)

include(GNUInstallDirs)
find_package(Threads REQUIRED)

add_library(qv_flags INTERFACE)
if(MSVC)
    target_compile_options(qv_flags INTERFACE /W4 /EHsc /permissive- /utf-8 /Zc:__cplusplus /Zc:preprocessor
        $<$<BOOL:${QV_WARNINGS_AS_ERRORS}>:/WX>)
else()
    target_compile_options(qv_flags INTERFACE -Wall -Wextra -Wpedantic -Wnon-virtual-dtor -Wformat=2 -Wundef
        $<$<NOT:$<BOOL:${QV_UNITE}>>:-Wshadow>
        # GCC 12 reports overlapping copies in plain string concatenations at -O3.
        $<$<AND:$<CXX_COMPILER_ID:GNU>,$<CONFIG:Release>>:-Wno-restrict>
        $<$<BOOL:${QV_WARNINGS_AS_ERRORS}>:-Werror>)
endif()
# The 32-bit compiler would keep doubles in wider registers and truncate and compare them there: 8.2 * 10 would be less
# than 82.
if(MINGW AND CMAKE_SIZEOF_VOID_P EQUAL 4)
    target_compile_options(qv_flags INTERFACE -msse2 -mfpmath=sse)
endif()
if(QV_SANITIZE)
    target_compile_options(qv_flags INTERFACE -fsanitize=${QV_SANITIZE} -fno-sanitize-recover=all -fno-omit-frame-pointer)
    target_link_options(qv_flags INTERFACE -fsanitize=${QV_SANITIZE})
endif()

# qv_precompile(TARGET [HEADER...]): precompiles the standard headers for all sources of a target. Missing includes are
# not noticed then, so another build must work without it. The options make compiler caches work with it. GCC 12 takes
# the precompiled headers for user headers and reports copies beyond their ends where strings are moved.
function(qv_precompile target)
    if(QV_PRECOMPILE)
        target_precompile_headers(${target} PRIVATE <algorithm> <array> <atomic> <functional> <map> <memory> <optional>
            <string> <string_view> <utility> <vector> ${ARGN})
        target_compile_options(${target} PRIVATE "$<$<CXX_COMPILER_ID:GNU>:-fpch-preprocess;-Wno-array-bounds;-Wno-stringop-overflow>"
            "$<$<CXX_COMPILER_ID:Clang>:SHELL:-Xclang -fno-pch-timestamp>")
    endif()
endfunction()

# qv_unite(TARGET MODE): compiles some ten sources as one, which takes a third of the time for a full build. Missing
# includes, and names that hide a source's own, are not noticed then, so another build must work without it.
function(qv_unite target mode)
    if(QV_UNITE)
        set_target_properties(${target} PROPERTIES UNITY_BUILD ON UNITY_BUILD_MODE ${mode} UNITY_BUILD_BATCH_SIZE 10)
    endif()
endfunction()

# The library's objects. Each folder adds its sources with qv_sources(). The shared library and the programs that use
# its internals (tests, benchmarks, fuzz targets) link the same objects, so nothing is exported only for them.
add_library(qvcommon_objects OBJECT)
set_target_properties(qvcommon_objects PROPERTIES POSITION_INDEPENDENT_CODE ON)
target_include_directories(qvcommon_objects PUBLIC ${PROJECT_SOURCE_DIR}/include ${PROJECT_SOURCE_DIR})
target_compile_features(qvcommon_objects PUBLIC cxx_std_20)
target_link_libraries(qvcommon_objects PRIVATE qv_flags Threads::Threads)
target_compile_options(qvcommon_objects PRIVATE $<$<CXX_COMPILER_ID:GNU>:-Wconversion>)
qv_unite(qvcommon_objects GROUP)
if(WIN32)
    target_compile_definitions(qvcommon_objects PUBLIC QVCOMMON_DLL_EXPORT)
endif()

# The shared library. Until 1.0, each minor version is its own binary interface (docs/versions.md).
set(QV_INTERFACE_VERSION ${PROJECT_VERSION_MAJOR}.${PROJECT_VERSION_MINOR})
add_library(qvcommon SHARED)
add_library(QvCommon::QvCommon ALIAS qvcommon)
set_target_properties(qvcommon PROPERTIES EXPORT_NAME QvCommon VERSION ${PROJECT_VERSION} SOVERSION ${QV_INTERFACE_VERSION})
target_include_directories(qvcommon INTERFACE $<BUILD_INTERFACE:${PROJECT_SOURCE_DIR}/include>
    $<INSTALL_INTERFACE:${CMAKE_INSTALL_INCLUDEDIR}>)
if(WIN32)
    set_target_properties(qvcommon PROPERTIES PREFIX "")
    target_compile_definitions(qvcommon INTERFACE QVCOMMON_DLL_IMPORT)
endif()
target_compile_features(qvcommon PUBLIC cxx_std_20)
target_link_libraries(qvcommon PRIVATE $<BUILD_INTERFACE:qvcommon_objects>)
# Calls within the library bind directly to their function, as on Windows, and relocations take a bit instead of a
# record: a smaller file that loads faster. Flags that the linker does not support are omitted.
if(NOT WIN32)
    include(CheckLinkerFlag)
    foreach(flag -Bsymbolic-functions --as-needed --gc-sections "-z,pack-relative-relocs")
        string(MAKE_C_IDENTIFIER "QV_LINKER_KNOWS_${flag}" known)
        check_linker_flag(CXX "-Wl,${flag}" ${known})
        if(${known})
            target_link_options(qvcommon PRIVATE "-Wl,${flag}")
        endif()
    endforeach()
endif()
qv_precompile(qvcommon_objects)

# Sources of different folders are never compiled as one: only the lowest layer may include system headers.
function(qv_sources)
    list(TRANSFORM ARGN PREPEND ${CMAKE_CURRENT_SOURCE_DIR}/)
    target_sources(qvcommon_objects PRIVATE ${ARGN})
    cmake_path(GET CMAKE_CURRENT_SOURCE_DIR FILENAME folder)
    foreach(source IN LISTS ARGN)
        get_property(count GLOBAL PROPERTY QV_SOURCES_OF_${folder})
        math(EXPR group "0${count} / 10")
        set_property(SOURCE ${source} TARGET_DIRECTORY qvcommon_objects PROPERTY UNITY_GROUP ${folder}_${group})
        math(EXPR count "0${count} + 1")
        set_property(GLOBAL PROPERTY QV_SOURCES_OF_${folder} ${count})
    endforeach()
endfunction()

# qv_version_resource(TARGET "Description"): adds version information to a Windows file.
function(qv_version_resource target QV_FILE_DESCRIPTION)
    if(NOT WIN32)
        return()
    endif()
    get_target_property(type ${target} TYPE)
    set(QV_FILE_TYPE $<IF:$<STREQUAL:${type},EXECUTABLE>,0x1L,0x2L>)
    set(QV_FILE_NAME $<TARGET_FILE_NAME:${target}>)
    set(script ${CMAKE_CURRENT_BINARY_DIR}/${target}-version.rc)
    configure_file(${PROJECT_SOURCE_DIR}/cmake/package/Version.rc.in ${script}.in @ONLY)
    file(GENERATE OUTPUT ${script} INPUT ${script}.in)
    target_sources(${target} PRIVATE ${script})
endfunction()
qv_version_resource(qvcommon "Common components for desktop applications")

# The library throws across its boundary, so the compiler's run time is linked dynamically; on Windows, its DLLs are
# beside the programs.
if(MINGW)
    foreach(dll zlib1.dll libstdc++-6.dll libgcc_s_seh-1.dll libgcc_s_dw2-1.dll libwinpthread-1.dll)
        execute_process(COMMAND ${CMAKE_CXX_COMPILER} -print-file-name=${dll} OUTPUT_VARIABLE path OUTPUT_STRIP_TRAILING_WHITESPACE)
        if(NOT IS_ABSOLUTE "${path}")
            find_file(path_${dll} ${dll} PATHS ${CMAKE_FIND_ROOT_PATH}/lib ${CMAKE_FIND_ROOT_PATH}/bin
                /usr/${QV_MINGW_TRIPLE}/lib NO_DEFAULT_PATH NO_CMAKE_FIND_ROOT_PATH)
            set(path "${path_${dll}}")
        endif()
        # Their debugging information is nine tenths of their size.
        if(EXISTS "${path}")
            set(stripped ${CMAKE_RUNTIME_OUTPUT_DIRECTORY}/${dll})
            if(${path} IS_NEWER_THAN ${stripped})
                file(MAKE_DIRECTORY ${CMAKE_RUNTIME_OUTPUT_DIRECTORY})
                execute_process(COMMAND ${CMAKE_STRIP} --strip-unneeded -o ${stripped} ${path} COMMAND_ERROR_IS_FATAL ANY)
            endif()
            list(APPEND QV_RUNTIME_DLLS ${stripped})
        endif()
    endforeach()
endif()

# A program of this tree on the shared library: it sees only the exported headers.
function(qv_program name)
    add_executable(${name} ${ARGN})
    target_link_libraries(${name} PRIVATE qvcommon qv_flags)
endfunction()

# A program that links the library's objects and may use internals.
function(qv_internal_program name)
    add_executable(${name} ${ARGN})
    target_link_libraries(${name} PRIVATE qvcommon_objects qv_flags)
endfunction()
