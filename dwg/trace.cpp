#include "dwg/trace.h"

#include <utility>

#include "dwg/state.h"

namespace zm::dwg {

void Trace::Line(double, double, double, double) {}
void Trace::Polyline(const double*, int) {}
void Trace::Point(double, double) {}
void Trace::Arc(double, double, double, double, double) {}
void Trace::Text(int, double, double, double, double, const char*) {}
void Trace::SetLay(const char*) {}
void Trace::SetColor(int) {}
void Trace::SetLtype(const char*) {}
void Trace::SetStyle(int, const char*, const char*, double, double) {}
void Trace::SetElev(double, double) {}
void Trace::Insert(double, double, double, double, double, const char*) {}

Trace* SetTrace(Trace* trace) {
    return std::exchange(state().trace, trace);
}

}  // namespace zm::dwg
