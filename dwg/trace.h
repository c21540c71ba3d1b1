// The writer's calls as calls: a trace takes the place of a drawing file, so that tests can compare what reaches the
// writer without reading a file.
#pragma once

namespace zm::dwg {

/// What receives the calls. Arguments are those of dwg/writer.h and zenromath/dwg.h, as the caller gave them: texts are
/// not upper-cased, nothing is checked, and texts are valid during the call only. The base does nothing.
class Trace {
 public:
    virtual ~Trace() = default;
    virtual void Line(double x1, double y1, double x2, double y2);
    virtual void Polyline(const double* xy, int n);
    virtual void Point(double x, double y);
    virtual void Arc(double x, double y, double radius, double start, double end);
    virtual void Text(int justification, double x, double y, double height, double angle, const char* text);
    virtual void SetLay(const char* name);
    virtual void SetColor(int color);
    virtual void SetLtype(const char* name);
    virtual void SetStyle(int type, const char* name, const char* font, double width, double oblique);
    virtual void SetElev(double elevation, double thickness);
    virtual void Insert(double x, double y, double xScale, double yScale, double angle, const char* name);
};

/// While a trace is set, _LDBline, _LDBpolyline, _LDBpoint, _LDBarc, _LDBtext, _LDBsetlay, _LDBsetcolor, _LDBsetltype,
/// _LDBsetstyle, _LDBsetelev and _LDBinsert go to it and to nothing else; null takes it away.
/// \return the trace that was set before; the caller keeps owning both
Trace* SetTrace(Trace* trace);

}  // namespace zm::dwg
