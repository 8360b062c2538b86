# tarnwell_module(NAME SOURCES ... PUBLIC ... PRIVATE ...)
# One static library for one folder of src/. A module names only the modules below it, so that a
# call upwards does not link.
function(tarnwell_module NAME)
  cmake_parse_arguments(ARG "" "" "SOURCES;PUBLIC;PRIVATE" ${ARGN})
  string(TOLOWER ${NAME} LOWER)
  add_library(tarnwell_${LOWER} STATIC ${ARG_SOURCES})
  target_include_directories(tarnwell_${LOWER} PUBLIC ${PROJECT_SOURCE_DIR}/src)
  target_link_libraries(tarnwell_${LOWER} PUBLIC ${ARG_PUBLIC} PRIVATE tarnwell_flags ${ARG_PRIVATE})
endfunction()
