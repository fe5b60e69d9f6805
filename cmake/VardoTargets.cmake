# One library a folder; what a folder may use is what its library is linked with.

add_library(vardo_options INTERFACE)
target_include_directories(vardo_options INTERFACE ${PROJECT_SOURCE_DIR}/src)
# -Wrestrict of GCC 12 sees overlaps in plain string concatenation (GCC bug 105329).
target_compile_options(vardo_options INTERFACE -Wall -Wextra -Wpedantic -Werror -Wno-restrict)
if(VARDO_SANITIZE)
  # A null pointer that is followed ends the program without a check for it, x86 reads at odd addresses, and the two checks are a
  # quarter of the compiler's work.
  target_compile_options(vardo_options INTERFACE -fsanitize=address,undefined -fno-sanitize=null,alignment
                         -fno-sanitize-recover=all -fno-omit-frame-pointer)
  target_link_options(vardo_options INTERFACE -fsanitize=address,undefined)
endif()
if(WIN32)
  target_compile_definitions(vardo_options INTERFACE UNICODE _UNICODE NOMINMAX WIN32_LEAN_AND_MEAN _WIN32_WINNT=0x0A00)
  target_link_options(vardo_options INTERFACE -static)
endif()

# vardo_headers(NAME LIBRARIES lib... HEADERS header...): headers that the compiler reads once for all targets that reuse them, with
# target_precompile_headers(TARGET REUSE_FROM NAME).
function(vardo_headers name)
  cmake_parse_arguments(arg "" "" "LIBRARIES;HEADERS" ${ARGN})
  file(CONFIGURE OUTPUT ${name}.cpp CONTENT "")
  add_library(${name} OBJECT ${CMAKE_CURRENT_BINARY_DIR}/${name}.cpp)
  target_link_libraries(${name} PRIVATE vardo_options ${arg_LIBRARIES})
  target_precompile_headers(${name} PRIVATE ${arg_HEADERS})
endfunction()

vardo_headers(vardo_standard_headers HEADERS
  <algorithm> <array> <charconv> <cmath> <cstdint> <deque> <filesystem> <functional> <map> <memory> <optional> <set> <span>
  <sstream> <string> <string_view> <unordered_map> <unordered_set> <utility> <variant> <vector>)
if(BUILD_SHARED_LIBS)  # as they are compiled
  set_target_properties(vardo_standard_headers PROPERTIES POSITION_INDEPENDENT_CODE ON)
endif()

# vardo_library(NAME [DEPENDS lib...] [DIRECTORY dir] [FILES file...]): the sources of this folder (or FILES) as the library vardo_NAME.
function(vardo_library name)
  cmake_parse_arguments(arg "" "" "DEPENDS;FILES" ${ARGN})
  if(NOT arg_FILES)
    file(GLOB arg_FILES CONFIGURE_DEPENDS ${CMAKE_CURRENT_SOURCE_DIR}/*.cpp)
  endif()
  list(TRANSFORM arg_DEPENDS REPLACE "^([a-z_]+)$" "vardo_\\1")
  if(arg_FILES)
    add_library(vardo_${name} ${arg_FILES})
    target_link_libraries(vardo_${name} PUBLIC vardo_options ${arg_DEPENDS})
    target_precompile_headers(vardo_${name} REUSE_FROM vardo_standard_headers)
  else()
    add_library(vardo_${name} INTERFACE)
    target_link_libraries(vardo_${name} INTERFACE vardo_options ${arg_DEPENDS})
  endif()
endfunction()
