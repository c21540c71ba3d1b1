# Options that every target of the project takes, carried by one interface target.
set(CMAKE_CXX_EXTENSIONS OFF)
set(CMAKE_POSITION_INDEPENDENT_CODE ON)
set(CMAKE_RUNTIME_OUTPUT_DIRECTORY ${PROJECT_BINARY_DIR}/bin)
set(CMAKE_CXX_VISIBILITY_PRESET hidden)
set(CMAKE_VISIBILITY_INLINES_HIDDEN ON)
set(CMAKE_EXPORT_COMPILE_COMMANDS ON)
if(NOT CMAKE_BUILD_TYPE AND NOT CMAKE_CONFIGURATION_TYPES)
  set(CMAKE_BUILD_TYPE Release CACHE STRING "Kind of build" FORCE)
endif()

# The folder of the installed library, which holds its default data too: the library looks for them beside itself,
# wherever the whole is moved.
set(ZM_MODULE_DIR ${CMAKE_INSTALL_LIBDIR}/zenromath)
if(WIN32)
  set(ZM_MODULE_DIR ${CMAKE_INSTALL_BINDIR})
endif()

option(ZM_WERROR "Treat warnings as errors" OFF)
option(ZM_SANITIZE "Build with AddressSanitizer and UndefinedBehaviorSanitizer" OFF)
option(ZM_COUNT_USES "Count the uses of short forms, for their tests" OFF)
option(ZM_FUZZER "Instrument the core for libFuzzer" OFF)

add_library(zm_options INTERFACE)
target_compile_features(zm_options INTERFACE cxx_std_20)
target_include_directories(zm_options INTERFACE
  $<BUILD_INTERFACE:${PROJECT_SOURCE_DIR}/include> $<BUILD_INTERFACE:${PROJECT_SOURCE_DIR}>)
target_compile_options(zm_options INTERFACE
  $<$<CXX_COMPILER_ID:GNU,Clang>:-Wall;-Wextra;-Wpedantic;-Wshadow;-ffp-contract=off>  # a * b + c rounds alike everywhere
  $<$<CXX_COMPILER_ID:GNU>:-Wno-restrict>  # g++ 12 warns of "text" + std::string inside the standard library
  $<$<CXX_COMPILER_ID:MSVC>:/W4;/fp:precise;/utf-8>)
target_compile_definitions(zm_options INTERFACE ZM_BUILDING)
if(ZM_WERROR)
  target_compile_options(zm_options INTERFACE -Werror)
endif()
if(ZM_SANITIZE)
  target_compile_options(zm_options INTERFACE -fsanitize=address,undefined -fno-sanitize-recover=all -fno-omit-frame-pointer)
  target_link_options(zm_options INTERFACE -fsanitize=address,undefined)
  target_compile_definitions(zm_options INTERFACE _GLIBCXX_ASSERTIONS)  # each index, iterator and empty container is checked
  # What the sanitizers add to the program's and the tests' own code takes the optimiser longer than it saves at run time.
  set(ZM_QUICKLY_BUILT -O0)
endif()
if(ZM_COUNT_USES)
  target_compile_definitions(zm_options INTERFACE ZM_COUNT_USES)
endif()
# What fuzz targets reach counts its branches for them; tests, which nobody fuzzes, are compiled sooner without.
add_library(zm_instrumented INTERFACE)
if(ZM_FUZZER)
  target_compile_options(zm_instrumented INTERFACE -fsanitize=fuzzer-no-link)
  target_link_options(zm_options INTERFACE -fsanitize=fuzzer-no-link)
endif()
if(WIN32)
  target_compile_definitions(zm_options INTERFACE NOMINMAX WIN32_LEAN_AND_MEAN _USE_MATH_DEFINES __USE_MINGW_ANSI_STDIO=1)
  # LONG is long there and int's equal; formats are checked on the other systems.
  target_compile_options(zm_options INTERFACE $<$<CXX_COMPILER_ID:GNU,Clang>:-Wno-format>)
  target_link_options(zm_options INTERFACE -static)  # no library of the compiler beside ours
endif()

include(ZmHeaders)
zm_make_headers(zm_headers LINK zm_instrumented)

# zm_add_folder(NAME SOURCES ... LINK ...): the target zm_NAME, one for each folder of the core.
function(zm_add_folder name)
  cmake_parse_arguments(arg "" "" "SOURCES;LINK" ${ARGN})
  add_library(zm_${name} STATIC ${arg_SOURCES})
  target_link_libraries(zm_${name} PUBLIC zm_options ${arg_LINK} PRIVATE zm_instrumented)
  zm_use_headers(zm_${name} zm_headers)
  set_property(GLOBAL APPEND PROPERTY ZM_CORE_TARGETS zm_${name})
endfunction()

# zm_export_all(TARGET): all of a folder is seen outside of the shared library. On Windows that goes by ZM_API alone.
function(zm_export_all target)
  if(NOT WIN32)
    # Headers that were parsed for a hidden one do not serve it.
    set_target_properties(${target} PROPERTIES CXX_VISIBILITY_PRESET default DISABLE_PRECOMPILE_HEADERS ON)
  endif()
endfunction()

if(WIN32)
  # The dialogs of the library, for each program that shows them itself, and what a file's properties show.
  enable_language(RC)
  set(ZM_DIALOG_RESOURCES ${PROJECT_SOURCE_DIR}/resources/dialogs.rc)
  set(CMAKE_RC_FLAGS "--codepage=936")

  # zm_add_version(TARGET TYPE FILE_NAME DESCRIPTION)    TYPE: VFT_DLL or VFT_APP
  function(zm_add_version target zm_file_type zm_file_name zm_file_description)
    set(script ${PROJECT_BINARY_DIR}/resources/${target}.rc)
    configure_file(${PROJECT_SOURCE_DIR}/resources/version.rc.in ${script} @ONLY)
    target_sources(${target} PRIVATE ${script})
  endfunction()
endif()
