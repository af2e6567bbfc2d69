# 64-bit Windows, built with MinGW-w64 and run under Wine.

set(QV_MINGW_TRIPLE x86_64-w64-mingw32)
set(QV_WINE wine-x64)
set(CMAKE_SYSTEM_PROCESSOR AMD64)
include(${CMAKE_CURRENT_LIST_DIR}/mingw.cmake)
