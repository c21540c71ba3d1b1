# Tests: one program for each folder, each case a process of its own under ctest.
find_package(GTest REQUIRED)
find_package(nlohmann_json REQUIRED)
include(GoogleTest)

# zm_add_tests(FOLDER SOURCES ... LINK ...): the program FOLDER_tests. Its own folder is linked by itself.
function(zm_add_tests folder)
  cmake_parse_arguments(arg "" "" "SOURCES;LINK" ${ARGN})
  add_executable(${folder}_tests ${arg_SOURCES})
  target_link_libraries(${folder}_tests PRIVATE zm_${folder} ${arg_LINK} zm_test_support zm_test_main)
  gtest_discover_tests(${folder}_tests DISCOVERY_TIMEOUT 120 PROPERTIES TIMEOUT 300)
endfunction()

# zm_add_vector_handlers(FOLDER SOURCES ... LINK ... FILES ...): handlers of the calls of one folder, for the program
# vector_runner and for vector_runner_FOLDER, which has only these (handy while working on one folder).
function(zm_add_vector_handlers folder)
  cmake_parse_arguments(arg "" "" "SOURCES;LINK" ${ARGN})
  add_executable(vector_runner_${folder} EXCLUDE_FROM_ALL ${arg_SOURCES})
  target_link_libraries(vector_runner_${folder} PRIVATE zm_vector_runner zm_${folder} ${arg_LINK})
  list(TRANSFORM arg_SOURCES PREPEND ${CMAKE_CURRENT_SOURCE_DIR}/)
  set_property(GLOBAL APPEND PROPERTY ZM_VECTOR_SOURCES ${arg_SOURCES})
  set_property(GLOBAL APPEND PROPERTY ZM_VECTOR_LINK zm_${folder} ${arg_LINK})
endfunction()
