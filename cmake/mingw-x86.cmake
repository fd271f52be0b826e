# Cross build for 32-bit Windows (what VB6 and 32-bit Office load); tests run under Wine's 32-bit side.
set(CMAKE_SYSTEM_NAME Windows)
set(CMAKE_SYSTEM_PROCESSOR x86)
set(TARN_TRIPLE i686-w64-mingw32)
set(TARN_ARCH x86)
include(${CMAKE_CURRENT_LIST_DIR}/mingw-common.cmake)
