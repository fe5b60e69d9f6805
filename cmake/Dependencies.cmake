# Libraries that others keep well, under the same target names on every system. On Linux they are Debian's packages; for Windows those
# that the core's edges need are built from Debian's source packages (cmake/windows/build-dependencies).

find_package(GTest REQUIRED)
find_package(pugixml REQUIRED)
find_package(Threads REQUIRED)

if(WIN32)
  add_library(libdeflate::libdeflate STATIC IMPORTED)
  set_target_properties(libdeflate::libdeflate PROPERTIES
    IMPORTED_LOCATION ${VARDO_WINDOWS_DEPENDENCIES}/lib/libdeflate.a
    INTERFACE_INCLUDE_DIRECTORIES ${VARDO_WINDOWS_DEPENDENCIES}/include)
  foreach(library nlohmann_json::nlohmann_json CLI11::CLI11 fmt::fmt Random123::Random123)
    add_library(${library} INTERFACE IMPORTED)
    target_include_directories(${library} INTERFACE ${VARDO_WINDOWS_DEPENDENCIES}/include-links)
  endforeach()
  target_compile_definitions(fmt::fmt INTERFACE FMT_HEADER_ONLY)
else()
  find_package(PkgConfig REQUIRED)
  pkg_check_modules(libdeflate REQUIRED IMPORTED_TARGET libdeflate)
  add_library(libdeflate::libdeflate ALIAS PkgConfig::libdeflate)
  pkg_check_modules(icu REQUIRED IMPORTED_TARGET icu-i18n icu-uc)
  find_package(nlohmann_json REQUIRED)
  find_package(CLI11 REQUIRED)
  find_package(fmt REQUIRED)
  find_package(Qt6 REQUIRED COMPONENTS Widgets PrintSupport Test)
  find_path(VARDO_RANDOM123 Random123/philox.h REQUIRED)
  add_library(Random123::Random123 INTERFACE IMPORTED)
  target_include_directories(Random123::Random123 INTERFACE ${VARDO_RANDOM123})
  # For vardo-bench alone.
  find_package(benchmark QUIET)
  find_package(ZLIB QUIET)
endif()
