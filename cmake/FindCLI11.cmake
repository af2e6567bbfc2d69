# Finds CLI11 by its own package files and defines the target CLI11::CLI11.
#
#   find_package(CLI11 REQUIRED)
#
# CLI11 is header-only, so a cross build uses the host's package. Its include folder there contains the headers of all
# packages, which a cross compiler must not see, so CLI11's headers are copied to their own folder.

find_package(CLI11 QUIET CONFIG PATHS /usr NO_CMAKE_FIND_ROOT_PATH)

include(FindPackageHandleStandardArgs)
find_package_handle_standard_args(CLI11 CONFIG_MODE)

if(CLI11_FOUND AND CMAKE_CROSSCOMPILING)
    get_target_property(headers CLI11::CLI11 INTERFACE_INCLUDE_DIRECTORIES)
    file(COPY ${headers}/CLI DESTINATION ${PROJECT_BINARY_DIR}/CLI11)
    set_target_properties(CLI11::CLI11 PROPERTIES INTERFACE_INCLUDE_DIRECTORIES ${PROJECT_BINARY_DIR}/CLI11)
endif()
