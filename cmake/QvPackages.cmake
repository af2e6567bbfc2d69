# The packages that scripts/package builds from the components: four Debian packages, or one zip for Windows.

set(QV_PACKAGE_CONTACT "QvCommon developers <qvcommon@example.org>" CACHE STRING "Who answers for the packages")

set(CPACK_PACKAGE_CONTACT ${QV_PACKAGE_CONTACT})
set(CPACK_PACKAGE_VENDOR QvCommon)
set(CPACK_VERBATIM_VARIABLES ON)
set(CPACK_STRIP_FILES ON)
set(CPACK_COMPONENTS_ALL library development tool documentation)

if(WIN32)
    set(CPACK_GENERATOR ZIP)
    set(CPACK_ARCHIVE_COMPONENT_INSTALL OFF)
    if(CMAKE_SIZEOF_VOID_P EQUAL 4)
        set(CPACK_SYSTEM_NAME windows-x86)
    else()
        set(CPACK_SYSTEM_NAME windows-x64)
    endif()
    set(CPACK_PACKAGE_FILE_NAME qvcommon-${PROJECT_VERSION}-${CPACK_SYSTEM_NAME})

    configure_file(${QV_PACKAGE_FILES}/README.txt.in ${PROJECT_BINARY_DIR}/README.txt @ONLY)
    install(FILES ${PROJECT_BINARY_DIR}/README.txt DESTINATION . COMPONENT library)

    # The run-time libraries are distributed with their licence texts, as the licences require; without the texts, not
    # at all.
    if(QV_RUNTIME_DLLS)
        set(licences ${QV_DOC_DIR}/licences)
        install(FILES ${QV_PACKAGE_FILES}/licences.txt DESTINATION ${licences} RENAME README.txt COMPONENT library)
        install(FILES /usr/share/common-licenses/GPL-3 DESTINATION ${licences} RENAME GPL-3.txt COMPONENT library)
        foreach(origin gcc-mingw-w64-base libz-mingw-w64 mingw-w64-common)
            install(FILES /usr/share/doc/${origin}/copyright DESTINATION ${licences} RENAME ${origin}.txt COMPONENT library)
        endforeach()
    endif()
else()
    set(CPACK_GENERATOR DEB)
    set(CPACK_PACKAGING_INSTALL_PREFIX /usr)
    set(CPACK_DEB_COMPONENT_INSTALL ON)
    set(CPACK_DEBIAN_FILE_NAME DEB-DEFAULT)
    set(CPACK_DEBIAN_PACKAGE_RELEASE 1)
    set(CPACK_DEBIAN_PACKAGE_GENERATE_SHLIBS ON)
    set(CPACK_PRE_BUILD_SCRIPTS ${QV_PACKAGE_FILES}/Debian.cmake)
    set(same "(= ${PROJECT_VERSION}-${CPACK_DEBIAN_PACKAGE_RELEASE})")

    # The library's package name has the number of the binary interface, so that packages of two interfaces can be
    # installed together.
    set(library libqvcommon${QV_INTERFACE_VERSION})
    set(CPACK_COMPONENT_LIBRARY_DESCRIPTION "The shared library.")
    set(CPACK_DEBIAN_LIBRARY_PACKAGE_NAME ${library})
    set(CPACK_DEBIAN_LIBRARY_PACKAGE_SECTION libs)
    set(CPACK_DEBIAN_LIBRARY_PACKAGE_SHLIBDEPS ON)
    set(CPACK_DEBIAN_LIBRARY_PACKAGE_CONTROL_EXTRA ${QV_PACKAGE_FILES}/triggers)

    set(CPACK_COMPONENT_DEVELOPMENT_DESCRIPTION "Headers, the files that pages expect, and what CMake and pkg-config ask for.")
    set(CPACK_DEBIAN_DEVELOPMENT_PACKAGE_NAME libqvcommon-dev)
    set(CPACK_DEBIAN_DEVELOPMENT_PACKAGE_SECTION libdevel)
    set(CPACK_DEBIAN_DEVELOPMENT_PACKAGE_DEPENDS "${library} ${same}")
    set(CPACK_DEBIAN_DEVELOPMENT_PACKAGE_SUGGESTS qvcommon-doc)

    set(CPACK_COMPONENT_TOOL_DESCRIPTION "The command-line tool qv.")
    set(CPACK_DEBIAN_TOOL_PACKAGE_NAME qvcommon-tools)
    set(CPACK_DEBIAN_TOOL_PACKAGE_SECTION utils)
    set(CPACK_DEBIAN_TOOL_PACKAGE_DEPENDS "${library} ${same}")
    set(CPACK_DEBIAN_TOOL_PACKAGE_SHLIBDEPS ON)
    set(CPACK_DEBIAN_PACKAGE_SHLIBDEPS_PRIVATE_DIRS ${CMAKE_LIBRARY_OUTPUT_DIRECTORY})

    set(CPACK_COMPONENT_DOCUMENTATION_DESCRIPTION "Documentation and examples.")
    set(CPACK_DEBIAN_DOCUMENTATION_PACKAGE_NAME qvcommon-doc)
    set(CPACK_DEBIAN_DOCUMENTATION_PACKAGE_SECTION doc)
    set(CPACK_DEBIAN_DOCUMENTATION_PACKAGE_ARCHITECTURE all)
endif()

include(CPack)
