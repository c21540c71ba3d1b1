# What the tests and the program take from this machine's packages when they are built for Windows: sources and headers
# alone, since the libraries are for this machine.
include_guard(GLOBAL)
set(ZM_GOOGLETEST_SOURCE /usr/src/googletest CACHE PATH "Sources of GoogleTest, as the package googletest has them")

# zm_header_library(TARGET FOLDER): a library of headers alone. Its folder is copied, since /usr/include has the headers
# of this machine's C library too.
function(zm_header_library target folder)
  find_path(ZM_${folder}_FOLDER ${folder} PATHS /usr/include REQUIRED NO_CMAKE_FIND_ROOT_PATH)
  set(copy ${PROJECT_BINARY_DIR}/headers/${folder})
  file(COPY ${ZM_${folder}_FOLDER}/${folder} DESTINATION ${copy})
  add_library(${target} INTERFACE IMPORTED GLOBAL)
  target_include_directories(${target} SYSTEM INTERFACE ${copy})
endfunction()

zm_header_library(nlohmann_json::nlohmann_json nlohmann)
zm_header_library(CLI11::CLI11 CLI)

if(ZM_BUILD_TESTS)
  add_library(zm_googletest STATIC
    ${ZM_GOOGLETEST_SOURCE}/googletest/src/gtest-all.cc ${ZM_GOOGLETEST_SOURCE}/googlemock/src/gmock-all.cc)
  target_include_directories(zm_googletest
    SYSTEM PUBLIC ${ZM_GOOGLETEST_SOURCE}/googletest/include ${ZM_GOOGLETEST_SOURCE}/googlemock/include
    PRIVATE ${ZM_GOOGLETEST_SOURCE}/googletest ${ZM_GOOGLETEST_SOURCE}/googlemock)
  target_compile_features(zm_googletest PUBLIC cxx_std_20)
  target_compile_options(zm_googletest PRIVATE -O0)
  add_library(GTest::gtest ALIAS zm_googletest)
  add_library(GTest::gmock ALIAS zm_googletest)
endif()
