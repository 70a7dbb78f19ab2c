# Cross-building for Windows with MinGW-w64; LATIGO_MINGW is the compiler's prefix. The run-time libraries are linked
# statically, so the results need only the system's DLLs.
set(CMAKE_SYSTEM_NAME Windows)
set(CMAKE_C_COMPILER ${LATIGO_MINGW}-gcc-posix)
set(CMAKE_CXX_COMPILER ${LATIGO_MINGW}-g++-posix)
set(CMAKE_RC_COMPILER ${LATIGO_MINGW}-windres)
set(CMAKE_EXE_LINKER_FLAGS_INIT -static)
set(CMAKE_SHARED_LINKER_FLAGS_INIT -static)
set(CMAKE_FIND_ROOT_PATH /usr/${LATIGO_MINGW})
set(CMAKE_FIND_ROOT_PATH_MODE_PROGRAM NEVER)
set(CMAKE_FIND_ROOT_PATH_MODE_LIBRARY ONLY)
set(CMAKE_FIND_ROOT_PATH_MODE_INCLUDE ONLY)
set(CMAKE_FIND_ROOT_PATH_MODE_PACKAGE ONLY)

# Programs run under Wine, by the loader for their width: Debian's `wine` selects one, and warns if the other is missing.
find_program(LATIGO_WINE ${LATIGO_LOADER} PATHS /usr/lib/wine NO_DEFAULT_PATH)
if(LATIGO_WINE)
  set(CMAKE_CROSSCOMPILING_EMULATOR ${LATIGO_WINE})
endif()
