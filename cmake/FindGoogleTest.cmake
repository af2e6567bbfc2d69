# Finds the source of GoogleTest and builds it with the project: GTest::gtest, GTest::gtest_main, GTest::gmock.
#
#   find_package(GoogleTest REQUIRED)
#
# A compiled package is for one compiler and one system, without sanitizers; each build of the test suite needs its own.
# Debian's package googletest contains the source. GoogleTest_SOURCE_DIR overrides its location.

find_path(GoogleTest_SOURCE_DIR googlemock/CMakeLists.txt PATHS /usr/src PATH_SUFFIXES googletest
    NO_CMAKE_FIND_ROOT_PATH DOC "The folder of GoogleTest's source")
mark_as_advanced(GoogleTest_SOURCE_DIR)

include(FindPackageHandleStandardArgs)
find_package_handle_standard_args(GoogleTest REQUIRED_VARS GoogleTest_SOURCE_DIR
    REASON_FAILURE_MESSAGE "Install Debian's package googletest, or set GoogleTest_SOURCE_DIR")

if(GoogleTest_FOUND AND NOT TARGET GTest::gtest)
    set(CMAKE_POLICY_DEFAULT_CMP0077 NEW)
    set(INSTALL_GTEST OFF)
    add_subdirectory(${GoogleTest_SOURCE_DIR} ${PROJECT_BINARY_DIR}/googletest EXCLUDE_FROM_ALL SYSTEM)
endif()
