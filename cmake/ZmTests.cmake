# Tests: one program for each folder, each case a process of its own under ctest.
include(GoogleTest)
include(ZmWriterTrace)
if(WIN32)
  include(ZmWindowsPackages)
else()
  find_package(GTest REQUIRED)
  find_package(nlohmann_json REQUIRED)
endif()

# zm_add_tests(FOLDER SOURCES ... LINK ... [PROPERTIES ...]): the program FOLDER_tests. Its own folder is linked by itself.
function(zm_add_tests folder)
  cmake_parse_arguments(arg "" "" "SOURCES;LINK;PROPERTIES" ${ARGN})
  add_executable(${folder}_tests ${arg_SOURCES})
  target_link_libraries(${folder}_tests PRIVATE zm_${folder} ${arg_LINK} zm_test_support zm_test_main)
  zm_use_headers(${folder}_tests zm_test_headers)
  zm_register_tests(${folder}_tests PROPERTIES ${arg_PROPERTIES})
endfunction()

# zm_register_tests(PROGRAM [PROPERTIES ...]): its cases for ctest. Programs for Windows are run by scripts/test-windows,
# many cases in one process, since a process is dear there.
function(zm_register_tests program)
  cmake_parse_arguments(arg "" "" "PROPERTIES" ${ARGN})
  if(NOT WIN32)
    gtest_discover_tests(${program} DISCOVERY_TIMEOUT 120 PROPERTIES TIMEOUT 300 ${arg_PROPERTIES})
  endif()
endfunction()

# zm_add_vector_handlers(FOLDER SOURCES ... LINK ... FILES ...): handlers of the calls of one folder, for the program
# vector_runner and for vector_runner_FOLDER, which has only these (handy while working on one folder).
function(zm_add_vector_handlers folder)
  cmake_parse_arguments(arg "" "" "SOURCES;LINK" ${ARGN})
  add_executable(vector_runner_${folder} EXCLUDE_FROM_ALL ${arg_SOURCES})
  target_link_libraries(vector_runner_${folder} PRIVATE zm_vector_runner zm_${folder} ${arg_LINK})
  zm_use_headers(vector_runner_${folder} zm_test_headers)
  list(TRANSFORM arg_SOURCES PREPEND ${CMAKE_CURRENT_SOURCE_DIR}/)
  set_property(GLOBAL APPEND PROPERTY ZM_VECTOR_SOURCES ${arg_SOURCES})
  set_property(GLOBAL APPEND PROPERTY ZM_VECTOR_LINK zm_${folder} ${arg_LINK})
endfunction()
