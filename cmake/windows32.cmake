# 32-bit builds use SSE2 arithmetic, as all others: x87 would round differently.
set(CMAKE_SYSTEM_PROCESSOR i686)
set(LATIGO_MINGW i686-w64-mingw32)
set(LATIGO_LOADER wine)
set(CMAKE_C_FLAGS_INIT "-msse2 -mfpmath=sse")
set(CMAKE_CXX_FLAGS_INIT "-msse2 -mfpmath=sse")
include(${CMAKE_CURRENT_LIST_DIR}/mingw.cmake)
