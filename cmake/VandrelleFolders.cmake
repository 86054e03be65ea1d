# One static library per folder, named vandrelle_<folder>.
#
#   vandrelle_folder(<Folder> [folders it stands on...] [SOURCES_ALSO folder...])
#
# A folder may hold one program: vandrelleIndex.cc stays out of the library and
# becomes the executable of that name (only Driver has one).
function(vandrelle_folder folder)
  cmake_parse_arguments(ARG "" "" "SOURCES_ALSO" ${ARGN})
  string(TOLOWER ${folder} lower)
  set(target vandrelle_${lower})
  set(sources)
  foreach(dir ${folder} ${ARG_SOURCES_ALSO})
    file(GLOB found CONFIGURE_DEPENDS ${PROJECT_SOURCE_DIR}/${dir}/*.cc)
    list(APPEND sources ${found})
  endforeach()
  set(program_source ${PROJECT_SOURCE_DIR}/${folder}/vandrelleIndex.cc)
  list(FIND sources ${program_source} has_program)
  list(REMOVE_ITEM sources ${program_source})

  set(links)
  foreach(below ${ARG_UNPARSED_ARGUMENTS})
    string(TOLOWER ${below} below)
    list(APPEND links vandrelle_${below})
  endforeach()

  add_library(${target} STATIC ${sources})
  target_include_directories(${target} PUBLIC ${PROJECT_SOURCE_DIR}/include ${PROJECT_SOURCE_DIR})
  target_link_libraries(${target} PUBLIC ${links})

  if(NOT has_program EQUAL -1)
    add_executable(vandrelleIndex ${program_source})
    target_link_libraries(vandrelleIndex PRIVATE ${target})
    install(TARGETS vandrelleIndex)
  endif()
endfunction()

# Each source file of the folder is one program.
function(vandrelle_programs folder)
  file(GLOB programs CONFIGURE_DEPENDS ${PROJECT_SOURCE_DIR}/${folder}/*.cc)
  foreach(source ${programs})
    get_filename_component(name ${source} NAME_WE)
    add_executable(${name} ${source})
    target_link_libraries(${name} PRIVATE vandrelle_driver)
    install(TARGETS ${name})
  endforeach()
endfunction()
