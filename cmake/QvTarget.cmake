# What every target of this tree shares: language level, warnings, sanitizers, output folders, and the library itself.

set(CMAKE_CXX_STANDARD 20)
set(CMAKE_CXX_STANDARD_REQUIRED ON)
set(CMAKE_CXX_EXTENSIONS OFF)
set(CMAKE_CXX_VISIBILITY_PRESET hidden)
set(CMAKE_VISIBILITY_INLINES_HIDDEN ON)
set(CMAKE_EXPORT_COMPILE_COMMANDS ON)
set(CMAKE_RUNTIME_OUTPUT_DIRECTORY ${PROJECT_BINARY_DIR}/bin)
set(CMAKE_LIBRARY_OUTPUT_DIRECTORY ${PROJECT_BINARY_DIR}/bin)
set(CMAKE_ARCHIVE_OUTPUT_DIRECTORY ${PROJECT_BINARY_DIR}/lib)
# A program finds the library beside itself, as it does on Windows.
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
        # GCC 12 sees overlapping copies in plain additions of strings at -O3.
        $<$<AND:$<CXX_COMPILER_ID:GNU>,$<CONFIG:Release>>:-Wno-restrict>
        $<$<BOOL:${QV_WARNINGS_AS_ERRORS}>:-Werror>)
endif()
# The 32-bit compiler would keep doubles in wider registers, and cut and compare them there: 8.2 * 10 would be below 82.
if(MINGW AND CMAKE_SIZEOF_VOID_P EQUAL 4)
    target_compile_options(qv_flags INTERFACE -msse2 -mfpmath=sse)
endif()
if(QV_SANITIZE)
    target_compile_options(qv_flags INTERFACE -fsanitize=${QV_SANITIZE} -fno-sanitize-recover=all -fno-omit-frame-pointer)
    target_link_options(qv_flags INTERFACE -fsanitize=${QV_SANITIZE})
endif()

# qv_precompile(TARGET [HEADER...]): compiles the standard headers once for all sources of a target. Sources that lack an
# include go unnoticed then, so there has to be a build without it. The options let compiler caches see through it. GCC 12
# takes the precompiled headers for ours, and sees copies beyond their ends where strings are moved.
function(qv_precompile target)
    if(QV_PRECOMPILE)
        target_precompile_headers(${target} PRIVATE <algorithm> <array> <atomic> <functional> <map> <memory> <optional>
            <string> <string_view> <utility> <vector> ${ARGN})
        target_compile_options(${target} PRIVATE "$<$<CXX_COMPILER_ID:GNU>:-fpch-preprocess;-Wno-array-bounds;-Wno-stringop-overflow>"
            "$<$<CXX_COMPILER_ID:Clang>:SHELL:-Xclang -fno-pch-timestamp>")
    endif()
endfunction()

# qv_unite(TARGET MODE): compiles some ten sources as one, which takes a third of the time from scratch. A source that lacks an
# include, or a name that hides one of its own source, goes unnoticed then, so there has to be a build without it.
function(qv_unite target mode)
    if(QV_UNITE)
        set_target_properties(${target} PROPERTIES UNITY_BUILD ON UNITY_BUILD_MODE ${mode} UNITY_BUILD_BATCH_SIZE 10)
    endif()
endfunction()

# The library's objects. Each floor adds its sources with qv_sources(). The shared library and the programs that look inside
# it (tests, benchmarks, fuzz targets) link the same objects, so that nothing is exported for their sake.
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

# The one library. Until 1.0 each minor version is a binary interface of its own (docs/versions.md).
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
# Calls within the library go straight to their function, as they do on Windows, and relocations take a bit instead of a
# record: a smaller file that loads faster. A flag that the linker does not know is left out.
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

# Sources of different floors are never compiled as one: the system's headers are for the lowest alone.
function(qv_sources)
    list(TRANSFORM ARGN PREPEND ${CMAKE_CURRENT_SOURCE_DIR}/)
    target_sources(qvcommon_objects PRIVATE ${ARGN})
    cmake_path(GET CMAKE_CURRENT_SOURCE_DIR FILENAME floor)
    foreach(source IN LISTS ARGN)
        get_property(count GLOBAL PROPERTY QV_SOURCES_OF_${floor})
        math(EXPR group "0${count} / 10")
        set_property(SOURCE ${source} TARGET_DIRECTORY qvcommon_objects PROPERTY UNITY_GROUP ${floor}_${group})
        math(EXPR count "0${count} + 1")
        set_property(GLOBAL PROPERTY QV_SOURCES_OF_${floor} ${count})
    endforeach()
endfunction()

# qv_version_resource(TARGET "What it is"): says in a Windows file which version it is.
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

# The library throws across its border, so the compiler's run time is linked dynamically; on Windows its DLLs lie beside
# the programs.
if(MINGW)
    foreach(dll zlib1.dll libstdc++-6.dll libgcc_s_seh-1.dll libgcc_s_dw2-1.dll libwinpthread-1.dll)
        execute_process(COMMAND ${CMAKE_CXX_COMPILER} -print-file-name=${dll} OUTPUT_VARIABLE path OUTPUT_STRIP_TRAILING_WHITESPACE)
        if(NOT IS_ABSOLUTE "${path}")
            find_file(path_${dll} ${dll} PATHS ${CMAKE_FIND_ROOT_PATH}/lib ${CMAKE_FIND_ROOT_PATH}/bin
                /usr/${QV_MINGW_TRIPLE}/lib NO_DEFAULT_PATH NO_CMAKE_FIND_ROOT_PATH)
            set(path "${path_${dll}}")
        endif()
        # They come with debugging information, nine tenths of their size.
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

# A program of this tree over the shared library: it sees the exported headers alone.
function(qv_program name)
    add_executable(${name} ${ARGN})
    target_link_libraries(${name} PRIVATE qvcommon qv_flags)
endfunction()

# A program that contains the library's objects and may look inside.
function(qv_internal_program name)
    add_executable(${name} ${ARGN})
    target_link_libraries(${name} PRIVATE qvcommon_objects qv_flags)
endfunction()
