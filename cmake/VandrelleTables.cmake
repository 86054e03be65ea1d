# The stem and stop tables, compiled from table/ with the program of the same
# build, and where they are installed. The programs look for their tables in
# /Vandrelle/table when none is named on the command line.
set(VANDRELLE_TABLE_DIR /Vandrelle/table CACHE PATH "Where the compiled tables are installed")

set(tables ${CMAKE_BINARY_DIR}/table)
file(MAKE_DIRECTORY ${tables})
add_custom_command(
  OUTPUT ${tables}/stem.tbl
  COMMAND vandrelleTable -stemsrc ${PROJECT_SOURCE_DIR}/table/stem.src -stem ${tables}/stem.tbl
  DEPENDS vandrelleTable ${PROJECT_SOURCE_DIR}/table/stem.src
  COMMENT "Compiling the stem table" VERBATIM)
add_custom_command(
  OUTPUT ${tables}/stop.key ${tables}/stop.ptr
  COMMAND vandrelleTable -stopsrc ${PROJECT_SOURCE_DIR}/table/stop.src -stop ${tables}/stop
  DEPENDS vandrelleTable ${PROJECT_SOURCE_DIR}/table/stop.src
  COMMENT "Compiling the stop table" VERBATIM)
add_custom_target(vandrelle_tables ALL
  DEPENDS ${tables}/stem.tbl ${tables}/stop.key ${tables}/stop.ptr)
install(FILES ${tables}/stem.tbl ${tables}/stop.key ${tables}/stop.ptr
  DESTINATION ${VANDRELLE_TABLE_DIR})
