# Settings shared by both Windows targets. The including file must set QV_MINGW_TRIPLE and QV_WINE.
#
# The compilers use POSIX threads, which std::thread and std::mutex require.

set(CMAKE_SYSTEM_NAME Windows)
set(CMAKE_C_COMPILER ${QV_MINGW_TRIPLE}-gcc-posix)
set(CMAKE_CXX_COMPILER ${QV_MINGW_TRIPLE}-g++-posix)
set(CMAKE_RC_COMPILER ${QV_MINGW_TRIPLE}-windres)

# Programs come from the host; libraries, headers and packages never do.
set(CMAKE_FIND_ROOT_PATH /usr/${QV_MINGW_TRIPLE})
set(CMAKE_FIND_ROOT_PATH_MODE_PROGRAM NEVER)
set(CMAKE_FIND_ROOT_PATH_MODE_LIBRARY ONLY)
set(CMAKE_FIND_ROOT_PATH_MODE_INCLUDE ONLY)
set(CMAKE_FIND_ROOT_PATH_MODE_PACKAGE ONLY)

cmake_path(ABSOLUTE_PATH QV_WINE BASE_DIRECTORY ${CMAKE_CURRENT_LIST_DIR}/../../scripts/lib NORMALIZE
    OUTPUT_VARIABLE CMAKE_CROSSCOMPILING_EMULATOR)
