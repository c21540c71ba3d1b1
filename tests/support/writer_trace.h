// The calls of the DWG writer as calls: a trace takes the place of a drawing file, so that tests can compare what
// reaches the writer without reading a file. The writer knows nothing of it: programs that link zm_writer_trace have
// their calls led here by the linker.
#pragma once

namespace zm::test {

/// What receives the calls. Arguments are those of dwg/writer/writer.h and zenromath/dwg.h, as the caller gave them:
/// texts are not upper-cased, nothing is checked, and texts are valid during the call only. The base does nothing.
class Trace {
 public:
    virtual ~Trace() = default;
    virtual void Line(double, double, double, double) {}
    virtual void Polyline(const double*, int) {}
    virtual void Point(double, double) {}
    virtual void Arc(double, double, double, double, double) {}
    virtual void Text(int, double, double, double, double, const char*) {}
    virtual void SetLay(const char*) {}
    virtual void SetColor(int) {}
    virtual void SetLtype(const char*) {}
    virtual void SetStyle(int, const char*, const char*, double, double) {}
    virtual void SetElev(double, double) {}
    virtual void Insert(double, double, double, double, double, const char*) {}
};

/// While a trace is set, _LDBline, _LDBpolyline, _LDBpoint, _LDBarc, _LDBtext, _LDBsetlay, _LDBsetcolor, _LDBsetltype,
/// _LDBsetstyle, _LDBsetelev and _LDBinsert go to it and to nothing else; null takes it away.
/// \return the trace that was set before; the caller keeps owning both
Trace* SetTrace(Trace* trace);

}  // namespace zm::test
