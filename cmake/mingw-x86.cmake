# Cross build for 32-bit Windows (what VB6 and 32-bit Office load); tests run under Wine's 32-bit side.
set(CMAKE_SYSTEM_NAME Windows)
set(CMAKE_SYSTEM_PROCESSOR x86)
set(TARN_TRIPLE i686-w64-mingw32)
set(TARN_ARCH x86)
# SSE2 doubles: the x87's 80-bit intermediates would let the same sum round differently
# depending on register spills, and the two builds must compute identical results.
set(CMAKE_C_FLAGS_INIT "-msse2 -mfpmath=sse")
set(CMAKE_CXX_FLAGS_INIT "-msse2 -mfpmath=sse")
include(${CMAKE_CURRENT_LIST_DIR}/mingw-common.cmake)
