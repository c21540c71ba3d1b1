# Headers that are parsed once and put in front of each source, where ZM_PRECOMPILE asks for it: half of the work of a
# build without optimisation and of those for Windows, whose own headers are long. The others see that each source
# includes what it needs.
option(ZM_PRECOMPILE "Parse the common headers once" OFF)
set(ZM_COMMON_HEADERS
  "<algorithm>" "<array>" "<cmath>" "<cstdint>" "<cstdio>" "<cstdlib>" "<cstring>" "<filesystem>" "<fstream>" "<functional>"
  "<map>" "<memory>" "<optional>" "<set>" "<sstream>" "<string>" "<string_view>" "<unordered_map>" "<utility>" "<vector>"
  "${PROJECT_SOURCE_DIR}/include/zenromath/platform.h")

# zm_make_headers(NAME LINK ... HEADERS ...): the common headers and these, for the targets of this folder and below.
function(zm_make_headers name)
  cmake_parse_arguments(arg "" "" "LINK;HEADERS" ${ARGN})
  if(NOT ZM_PRECOMPILE)
    return()
  endif()
  set(source ${CMAKE_CURRENT_BINARY_DIR}/${name}.cpp)
  file(CONFIGURE OUTPUT ${source} CONTENT "")
  add_library(${name} OBJECT ${source})
  target_link_libraries(${name} PRIVATE zm_options ${arg_LINK})
  target_precompile_headers(${name} PRIVATE ${ZM_COMMON_HEADERS} ${arg_HEADERS})
  # The same headers give the same file, which compiler caches need.
  target_compile_options(${name} PRIVATE $<$<CXX_COMPILER_ID:Clang>:SHELL:-Xclang -fno-pch-timestamp>)
  if(CMAKE_CXX_COMPILER_LAUNCHER MATCHES "ccache")
    # A cache that looks at preprocessed text gives back what was parsed before a comment changed, and keeps it under the
    # new headers' names too; the compiler then does not know the header again and reads it twice. So the headers' files
    # are compared as they are, in a part of the cache where nothing was stored otherwise.
    set_target_properties(${name} PROPERTIES CXX_COMPILER_LAUNCHER
      "${CMAKE_COMMAND};-E;env;CCACHE_DEPEND=1;CCACHE_NAMESPACE=whole-headers;${CMAKE_CXX_COMPILER_LAUNCHER}")
  endif()
endfunction()

# zm_use_headers(TARGET NAME)
function(zm_use_headers target name)
  if(ZM_PRECOMPILE)
    target_precompile_headers(${target} REUSE_FROM ${name})
  endif()
endfunction()
