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

# vardo_library(NAME [DEPENDS lib...] [DIRECTORY dir] [FILES file...]): the sources of this folder (or FILES) as the library vardo_NAME.
function(vardo_library name)
  cmake_parse_arguments(arg "" "" "DEPENDS;FILES" ${ARGN})
  if(NOT arg_FILES)
    file(GLOB arg_FILES CONFIGURE_DEPENDS ${CMAKE_CURRENT_SOURCE_DIR}/*.cpp)
  endif()
  list(TRANSFORM arg_DEPENDS REPLACE "^([a-z_]+)$" "vardo_\\1")
  if(arg_FILES)
    add_library(vardo_${name} STATIC ${arg_FILES})
    target_link_libraries(vardo_${name} PUBLIC vardo_options ${arg_DEPENDS})
  else()
    add_library(vardo_${name} INTERFACE)
    target_link_libraries(vardo_${name} INTERFACE vardo_options ${arg_DEPENDS})
  endif()
endfunction()
