# 32-bit Windows, built with MinGW-w64 and run under Wine.

set(QV_MINGW_TRIPLE i686-w64-mingw32)
set(QV_WINE wine-x86)
set(CMAKE_SYSTEM_PROCESSOR X86)
# Compute doubles in their stored width, as on the other targets; the x87 unit has more bits.
set(CMAKE_C_FLAGS_INIT "-msse2 -mfpmath=sse")
set(CMAKE_CXX_FLAGS_INIT "-msse2 -mfpmath=sse")
include(${CMAKE_CURRENT_LIST_DIR}/mingw.cmake)
