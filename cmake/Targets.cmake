# One function per kind of target, so that every library, program and test suite of the tree
# is declared the same way.

# The .cpp files of the listed folders of the repository, into `out`.
function(dd_sources out)
  set(sources)
  foreach(dir IN LISTS ARGN)
    file(GLOB found CONFIGURE_DEPENDS ${PROJECT_SOURCE_DIR}/${dir}/*.cpp)
    list(APPEND sources ${found})
  endforeach()
  set(${out} ${sources} PARENT_SCOPE)
endfunction()

# dd_library(NAME DIRS dir... [LINK item...])
# A static library of every .cpp in the listed folders of the workbench; it sees the
# repository root, so its headers are included as "workbench/room/File.h".
function(dd_library name)
  cmake_parse_arguments(ARG "" "" "DIRS;LINK" ${ARGN})
  dd_sources(sources ${ARG_DIRS})
  add_library(${name} STATIC ${sources})
  target_include_directories(${name} PUBLIC ${PROJECT_SOURCE_DIR})
  target_link_libraries(${name} ${ARG_LINK})
endfunction()

# dd_program(NAME OUTPUT output-name DIRS dir... LINK item...)
function(dd_program name)
  cmake_parse_arguments(ARG "" "OUTPUT" "DIRS;LINK" ${ARGN})
  dd_sources(sources ${ARG_DIRS})
  add_executable(${name} ${sources})
  set_target_properties(${name} PROPERTIES OUTPUT_NAME ${ARG_OUTPUT})
  target_link_libraries(${name} PRIVATE ${ARG_LINK})
endfunction()

# dd_test_suite(NAME DIRS dir... LINK item... LABELS label... [OWN_MAIN])
# One GoogleTest executable of every .cpp under the listed test folders (recursively), its
# tests registered with CTest under the given labels.
function(dd_test_suite name)
  cmake_parse_arguments(ARG "OWN_MAIN" "" "DIRS;LINK;LABELS" ${ARGN})
  set(sources)
  foreach(dir IN LISTS ARG_DIRS)
    file(GLOB_RECURSE found CONFIGURE_DEPENDS ${PROJECT_SOURCE_DIR}/tests/${dir}/*.cpp)
    list(APPEND sources ${found})
  endforeach()
  add_executable(${name} ${sources})
  target_include_directories(${name} PRIVATE ${PROJECT_SOURCE_DIR}/tests)
  target_link_libraries(${name} PRIVATE ${ARG_LINK} GTest::gtest GTest::gmock)
  if(NOT ARG_OWN_MAIN)
    target_link_libraries(${name} PRIVATE GTest::gtest_main)
  endif()
  target_compile_definitions(${name} PRIVATE
    DD_SOURCE_DIR="${PROJECT_SOURCE_DIR}"
    DD_MODULE_PATH="$<TARGET_FILE:drilldown>"
    DD_CLI_PATH="$<TARGET_FILE:drilldown_cli>")
  # Some tests load the built plug-in.
  add_dependencies(${name} drilldown)
  # A test that waits for an event that never comes fails instead of stalling the run.
  gtest_discover_tests(${name} DISCOVERY_TIMEOUT 60 PROPERTIES LABELS "${ARG_LABELS}" TIMEOUT 120)
endfunction()
