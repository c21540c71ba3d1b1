#include "tests/symbol/symbol_test.h"
#include "tests/support/writer_trace.h"

#include <algorithm>

#include "config/state.h"
#include "draw/state.h"
#include "dwg/writer/state.h"
#include "runtime/text/numbers.h"

namespace zm::test {

void WriterTrace::Line(double x1, double y1, double x2, double y2) {
    calls.push_back(numbers::Text("line %.3f %.3f %.3f %.3f", x1, y1, x2, y2));
}
void WriterTrace::Polyline(const double* xy, int n) {
    std::string text = "polyline";
    for (int i = 0; i < 2 * n; ++i) text += numbers::Text(" %.3f", xy[i]);
    calls.push_back(text);
}
void WriterTrace::Point(double x, double y) {
    calls.push_back(numbers::Text("point %.3f %.3f", x, y));
}
void WriterTrace::Arc(double x, double y, double radius, double start, double end) {
    calls.push_back(numbers::Text("arc %.3f %.3f %.3f %.3f %.3f", x, y, radius, start, end));
}
void WriterTrace::SetColor(int color) {
    calls.push_back(numbers::Text("color %d", color));
}
void WriterTrace::SetLtype(const char* name) {
    calls.push_back(std::string("ltype ") + name);
}
void WriterTrace::SetElev(double elevation, double thickness) {
    calls.push_back(numbers::Text("elev %g %g", elevation, thickness));
}
void WriterTrace::Insert(double x, double y, double xScale, double yScale, double angle, const char* name) {
    calls.push_back(numbers::Text("insert %.3f %.3f %g %g %.3f %s", x, y, xScale, yScale, angle, name));
}

DrawingTest::DrawingTest() {
    dwg::ResetState();
    config::ResetState();
    draw::ResetState();
    test::SetTrace(&m_writer);
    Begin();
}

DrawingTest::~DrawingTest() {
    m_dc.reset();
    draw::ResetState();
    config::ResetState();
}

CTqDraw& DrawingTest::Begin(int type, double pixelsPerUnit) {
    m_dc.reset();
    SelectWorkingTqDC(nullptr);
    m_dc = std::make_unique<CTqDraw>(type);
    m_dc->SetViewDrawDC(&m_device, pixelsPerUnit, 0.0, 0.0, 20000, 20000, 0);
    return *m_dc;
}

std::vector<std::string> DrawingTest::Recorded() {
    std::vector<std::string> commands;
    CStringArray& list = *m_dc->GetTqDCString();
    for (int i = 0; i < list.GetSize(); ++i) commands.emplace_back(list.GetAt(i).GetString());
    list.RemoveAll();
    return commands;
}

std::size_t DrawingTest::Count(const std::string& command) {
    const auto commands = Recorded();
    return static_cast<std::size_t>(
        std::count_if(commands.begin(), commands.end(), [&](const std::string& c) { return c.starts_with(command); }));
}

}  // namespace zm::test
