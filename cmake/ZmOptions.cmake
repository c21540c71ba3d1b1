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
endif()
if(ZM_FUZZER)
  target_compile_options(zm_options INTERFACE -fsanitize=fuzzer-no-link)
  target_link_options(zm_options INTERFACE -fsanitize=fuzzer-no-link)
endif()
if(WIN32)
  target_compile_definitions(zm_options INTERFACE NOMINMAX WIN32_LEAN_AND_MEAN _USE_MATH_DEFINES __USE_MINGW_ANSI_STDIO=1)
  target_link_options(zm_options INTERFACE -static-libgcc -static-libstdc++)
endif()

# zm_add_folder(NAME SOURCES ... LINK ...): the target zm_NAME, one for each folder of the core.
function(zm_add_folder name)
  cmake_parse_arguments(arg "" "" "SOURCES;LINK" ${ARGN})
  add_library(zm_${name} STATIC ${arg_SOURCES})
  target_link_libraries(zm_${name} PUBLIC zm_options ${arg_LINK})
  set_property(GLOBAL APPEND PROPERTY ZM_CORE_TARGETS zm_${name})
endfunction()
