# The writer's calls as calls (tests/support/writer_trace.h), for tests, benchmarks and fuzz targets.
include_guard(GLOBAL)
add_library(zm_writer_trace OBJECT ${PROJECT_SOURCE_DIR}/tests/support/writer_trace.cpp)
target_link_libraries(zm_writer_trace PUBLIC zm_options)
foreach(call _Z8_LDBlinedddd
    _Z12_LDBpolylinePKdi
    _Z9_LDBpointdd
    _Z7_LDBarcddddd
    _Z8_LDBtextiddddPKc
    _Z10_LDBsetlayPc
    _Z12_LDBsetcolori
    _Z12_LDBsetltypePc
    _Z12_LDBsetstyleiPcS_dd
    _Z11_LDBsetelevdd
    _Z10_LDBinsertdddddPKc)
  target_link_options(zm_writer_trace INTERFACE LINKER:--wrap=${call})
endforeach()
