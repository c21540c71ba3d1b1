// For each call NAME the linker leads its callers to __wrap_NAME, and __real_NAME to the writer (its option --wrap, which
// cmake/ZmWriterTrace.cmake lists with the same names).
#include "tests/support/writer_trace.h"

#include <utility>

namespace {

zm::test::Trace* g_trace = nullptr;

}  // namespace

zm::test::Trace* zm::test::SetTrace(Trace* trace) {
    return std::exchange(g_trace, trace);
}

void RealLine(double x1, double y1, double x2, double y2) __asm__("__real__Z8_LDBlinedddd");
void WrapLine(double x1, double y1, double x2, double y2) __asm__("__wrap__Z8_LDBlinedddd");
void RealPolyline(const double* xy, int n) __asm__("__real__Z12_LDBpolylinePKdi");
void WrapPolyline(const double* xy, int n) __asm__("__wrap__Z12_LDBpolylinePKdi");
void RealPoint(double x, double y) __asm__("__real__Z9_LDBpointdd");
void WrapPoint(double x, double y) __asm__("__wrap__Z9_LDBpointdd");
void RealArc(double x, double y, double radius, double start, double end) __asm__("__real__Z7_LDBarcddddd");
void WrapArc(double x, double y, double radius, double start, double end) __asm__("__wrap__Z7_LDBarcddddd");
void RealText(int justification, double x, double y, double height, double angle,
              const char* text) __asm__("__real__Z8_LDBtextiddddPKc");
void WrapText(int justification, double x, double y, double height, double angle,
              const char* text) __asm__("__wrap__Z8_LDBtextiddddPKc");
void RealSetLay(char* name) __asm__("__real__Z10_LDBsetlayPc");
void WrapSetLay(char* name) __asm__("__wrap__Z10_LDBsetlayPc");
void RealSetColor(int color) __asm__("__real__Z12_LDBsetcolori");
void WrapSetColor(int color) __asm__("__wrap__Z12_LDBsetcolori");
void RealSetLtype(char* name) __asm__("__real__Z12_LDBsetltypePc");
void WrapSetLtype(char* name) __asm__("__wrap__Z12_LDBsetltypePc");
void RealSetStyle(int type, char* name, char* font, double width,
                  double oblique) __asm__("__real__Z12_LDBsetstyleiPcS_dd");
void WrapSetStyle(int type, char* name, char* font, double width,
                  double oblique) __asm__("__wrap__Z12_LDBsetstyleiPcS_dd");
void RealSetElev(double elevation, double thickness) __asm__("__real__Z11_LDBsetelevdd");
void WrapSetElev(double elevation, double thickness) __asm__("__wrap__Z11_LDBsetelevdd");
void RealInsert(double x, double y, double xScale, double yScale, double angle,
                const char* name) __asm__("__real__Z10_LDBinsertdddddPKc");
void WrapInsert(double x, double y, double xScale, double yScale, double angle,
                const char* name) __asm__("__wrap__Z10_LDBinsertdddddPKc");

void WrapLine(double x1, double y1, double x2, double y2) {
    return g_trace != nullptr ? g_trace->Line(x1, y1, x2, y2) : RealLine(x1, y1, x2, y2);
}
void WrapPolyline(const double* xy, int n) {
    return g_trace != nullptr ? g_trace->Polyline(xy, n) : RealPolyline(xy, n);
}
void WrapPoint(double x, double y) {
    return g_trace != nullptr ? g_trace->Point(x, y) : RealPoint(x, y);
}
void WrapArc(double x, double y, double radius, double start, double end) {
    return g_trace != nullptr ? g_trace->Arc(x, y, radius, start, end) : RealArc(x, y, radius, start, end);
}
void WrapText(int justification, double x, double y, double height, double angle, const char* text) {
    return g_trace != nullptr ? g_trace->Text(justification, x, y, height, angle, text)
                              : RealText(justification, x, y, height, angle, text);
}
void WrapSetLay(char* name) {
    return g_trace != nullptr ? g_trace->SetLay(name) : RealSetLay(name);
}
void WrapSetColor(int color) {
    return g_trace != nullptr ? g_trace->SetColor(color) : RealSetColor(color);
}
void WrapSetLtype(char* name) {
    return g_trace != nullptr ? g_trace->SetLtype(name) : RealSetLtype(name);
}
void WrapSetStyle(int type, char* name, char* font, double width, double oblique) {
    return g_trace != nullptr ? g_trace->SetStyle(type, name, font, width, oblique)
                              : RealSetStyle(type, name, font, width, oblique);
}
void WrapSetElev(double elevation, double thickness) {
    return g_trace != nullptr ? g_trace->SetElev(elevation, thickness) : RealSetElev(elevation, thickness);
}
void WrapInsert(double x, double y, double xScale, double yScale, double angle, const char* name) {
    return g_trace != nullptr ? g_trace->Insert(x, y, xScale, yScale, angle, name)
                              : RealInsert(x, y, xScale, yScale, angle, name);
}
