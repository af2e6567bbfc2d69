# Debian's requirements beyond what is installed: compressed manual pages, a changelog and the copyright.

function(compress file)
    execute_process(COMMAND gzip -9 -n -f ${file} COMMAND_ERROR_IS_FATAL ANY)
endfunction()

string(TIMESTAMP date "%a, %d %b %Y %H:%M:%S +0000" UTC)
foreach(component ${CPACK_COMPONENTS_ALL})
    set(root ${CPACK_TEMPORARY_DIRECTORY}/${component}/usr)
    file(GLOB pages ${root}/share/man/man*/*.[1-9])
    foreach(page ${pages})
        compress(${page})
    endforeach()

    string(TOUPPER ${component} COMPONENT)
    set(changelog ${root}/share/doc/${CPACK_DEBIAN_${COMPONENT}_PACKAGE_NAME}/changelog.Debian)
    file(WRITE ${changelog} "qvcommon (${CPACK_PACKAGE_VERSION}-${CPACK_DEBIAN_PACKAGE_RELEASE}) unstable; urgency=medium\n\n"
        "  * See CHANGELOG.md in the package qvcommon-doc for what is new.\n\n"
        " -- ${CPACK_PACKAGE_CONTACT}  ${date}\n")
    compress(${changelog})
    file(COPY_FILE ${CMAKE_CURRENT_LIST_DIR}/copyright
        ${root}/share/doc/${CPACK_DEBIAN_${COMPONENT}_PACKAGE_NAME}/copyright)
endforeach()
