# A locale with decimal commas, which the machine need not have; the programs find it by VARDO_GERMAN, their environment.
find_program(VARDO_LOCALEDEF localedef REQUIRED)
set(locales ${CMAKE_CURRENT_BINARY_DIR}/locales)
add_custom_command(
  OUTPUT ${locales}/de_DE.UTF-8/LC_NUMERIC
  COMMAND ${CMAKE_COMMAND} -E make_directory ${locales}
  COMMAND ${VARDO_LOCALEDEF} -i de_DE -f UTF-8 ${locales}/de_DE.UTF-8
  VERBATIM)
add_custom_target(german_locale ALL DEPENDS ${locales}/de_DE.UTF-8/LC_NUMERIC)
set(VARDO_GERMAN LOCPATH=${locales} LC_ALL=de_DE.UTF-8)
