# What `cmake --install` installs, by component: library, development, tool, documentation. All paths are relative, so
# an installed tree is relocatable.
include(GNUInstallDirs)
include(CMakePackageConfigHelpers)

set(QV_CMAKE_DIR ${CMAKE_INSTALL_LIBDIR}/cmake/QvCommon)
set(QV_DOC_DIR ${CMAKE_INSTALL_DATADIR}/doc/qvcommon)
set(QV_PACKAGE_FILES ${PROJECT_SOURCE_DIR}/cmake/package)

# The library; on Windows, the compiler's run time is installed beside it.
install(TARGETS qvcommon EXPORT QvCommonTargets
    RUNTIME COMPONENT library
    LIBRARY COMPONENT library NAMELINK_COMPONENT development
    ARCHIVE COMPONENT development)
install(PROGRAMS ${QV_RUNTIME_DLLS} DESTINATION ${CMAKE_INSTALL_BINDIR} COMPONENT library)

# A project that builds the library as a subproject installs only its run-time files.
if(NOT PROJECT_IS_TOP_LEVEL)
    return()
endif()

# Headers, the assets of HTML pages, and the CMake and pkg-config files.
install(DIRECTORY ${PROJECT_SOURCE_DIR}/include/qvcommon DESTINATION ${CMAKE_INSTALL_INCLUDEDIR} COMPONENT development)
install(DIRECTORY ${PROJECT_SOURCE_DIR}/html/assets/ DESTINATION ${CMAKE_INSTALL_DATADIR}/qvcommon/html
    COMPONENT development PATTERN "*.py" EXCLUDE)

install(EXPORT QvCommonTargets NAMESPACE QvCommon:: DESTINATION ${QV_CMAKE_DIR} COMPONENT development)
configure_package_config_file(${QV_PACKAGE_FILES}/QvCommonConfig.cmake.in ${PROJECT_BINARY_DIR}/QvCommonConfig.cmake
    INSTALL_DESTINATION ${QV_CMAKE_DIR} PATH_VARS CMAKE_INSTALL_DATADIR)
# Until 1.0, each minor version has its own interface (docs/versions.md).
write_basic_package_version_file(${PROJECT_BINARY_DIR}/QvCommonConfigVersion.cmake COMPATIBILITY SameMinorVersion)
install(FILES ${PROJECT_BINARY_DIR}/QvCommonConfig.cmake ${PROJECT_BINARY_DIR}/QvCommonConfigVersion.cmake
    DESTINATION ${QV_CMAKE_DIR} COMPONENT development)

# The pkg-config file derives the prefix from its own location.
file(RELATIVE_PATH QV_PKGCONFIG_TO_PREFIX /prefix/${CMAKE_INSTALL_LIBDIR}/pkgconfig /prefix)
string(REGEX REPLACE "/$" "" QV_PKGCONFIG_TO_PREFIX ${QV_PKGCONFIG_TO_PREFIX})
set(QV_PKGCONFIG_DEFINITIONS $<$<PLATFORM_ID:Windows>:-DQVCOMMON_DLL_IMPORT>)
configure_file(${QV_PACKAGE_FILES}/qvcommon.pc.in ${PROJECT_BINARY_DIR}/qvcommon.pc.in @ONLY)
file(GENERATE OUTPUT ${PROJECT_BINARY_DIR}/qvcommon.pc INPUT ${PROJECT_BINARY_DIR}/qvcommon.pc.in)
install(FILES ${PROJECT_BINARY_DIR}/qvcommon.pc DESTINATION ${CMAKE_INSTALL_LIBDIR}/pkgconfig COMPONENT development)

foreach(page README CHANGELOG CONTRIBUTING SECURITY)
    install(FILES ${PROJECT_SOURCE_DIR}/${page}.md DESTINATION ${QV_DOC_DIR} COMPONENT documentation)
endforeach()
install(DIRECTORY ${PROJECT_SOURCE_DIR}/docs DESTINATION ${QV_DOC_DIR} COMPONENT documentation)
install(DIRECTORY ${PROJECT_SOURCE_DIR}/examples DESTINATION ${QV_DOC_DIR} COMPONENT documentation)

# The tool finds the library beside itself or in the library folder of the same tree.
if(QV_BUILD_TOOL)
    file(RELATIVE_PATH QV_BIN_TO_LIB /prefix/${CMAKE_INSTALL_BINDIR} /prefix/${CMAKE_INSTALL_LIBDIR})
    set_target_properties(qv PROPERTIES INSTALL_RPATH "$ORIGIN/${QV_BIN_TO_LIB}")
    install(TARGETS qv RUNTIME COMPONENT tool)
    if(QV_TOOL_DOCUMENTS)
        install(FILES ${QV_TOOL_DOCUMENTS}/qv.1 DESTINATION ${CMAKE_INSTALL_MANDIR}/man1 COMPONENT tool)
        install(FILES ${QV_TOOL_DOCUMENTS}/qv.bash DESTINATION ${CMAKE_INSTALL_DATADIR}/bash-completion/completions
            RENAME qv COMPONENT tool)
        install(FILES ${QV_TOOL_DOCUMENTS}/qv.fish DESTINATION ${CMAKE_INSTALL_DATADIR}/fish/vendor_completions.d
            COMPONENT tool)
        install(FILES ${QV_TOOL_DOCUMENTS}/_qv DESTINATION ${CMAKE_INSTALL_DATADIR}/zsh/site-functions COMPONENT tool)
    endif()
endif()
