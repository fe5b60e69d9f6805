# Windows with mingw-w64, 64-bit unless VARDO_WINDOWS_PROCESSOR says otherwise. The posix variant: the other one has no std::mutex.
if(NOT VARDO_WINDOWS_PROCESSOR)
  set(VARDO_WINDOWS_PROCESSOR x86_64)
endif()
set(VARDO_WINDOWS_TRIPLE ${VARDO_WINDOWS_PROCESSOR}-w64-mingw32)

set(CMAKE_SYSTEM_NAME Windows)
set(CMAKE_SYSTEM_PROCESSOR ${VARDO_WINDOWS_PROCESSOR})

set(CMAKE_C_COMPILER ${VARDO_WINDOWS_TRIPLE}-gcc-posix)
set(CMAKE_CXX_COMPILER ${VARDO_WINDOWS_TRIPLE}-g++-posix)
set(CMAKE_RC_COMPILER ${VARDO_WINDOWS_TRIPLE}-windres)
set(CMAKE_CROSSCOMPILING_EMULATOR ${CMAKE_CURRENT_LIST_DIR}/wine)

# Libraries come from the cross compiler's own tree and from what build-dependencies has built, never from the machine's.
get_filename_component(VARDO_WINDOWS_DEPENDENCIES ${CMAKE_CURRENT_LIST_DIR}/../../.deps/windows ABSOLUTE)
set(CMAKE_FIND_ROOT_PATH ${VARDO_WINDOWS_DEPENDENCIES} /usr/${VARDO_WINDOWS_TRIPLE})
set(CMAKE_FIND_ROOT_PATH_MODE_PROGRAM NEVER)
set(CMAKE_FIND_ROOT_PATH_MODE_LIBRARY ONLY)
set(CMAKE_FIND_ROOT_PATH_MODE_INCLUDE ONLY)
set(CMAKE_FIND_ROOT_PATH_MODE_PACKAGE ONLY)

# The import library of a DLL would be found first, and the programs would then need that DLL beside them.
set(ZLIB_LIBRARY /usr/${VARDO_WINDOWS_TRIPLE}/lib/libz.a)
