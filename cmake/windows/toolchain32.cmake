# 32-bit Windows, for a 32-bit Visio. Only the server is built so: see the option VARDO_SERVER_ONLY.
set(VARDO_WINDOWS_PROCESSOR i686)
include(${CMAKE_CURRENT_LIST_DIR}/toolchain.cmake)
