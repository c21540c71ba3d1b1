// A trace in place of a session.
#include <sstream>

#include "dwg/writer/state.h"
#include "dwg/writer/writer.h"
#include "tests/dwg/drawing.h"
#include "tests/support/writer_trace.h"

namespace zm::test {
namespace {

class Recorder : public test::Trace {
 public:
    void Line(double x1, double y1, double x2, double y2) override { Put("line", x1, y1, x2, y2); }
    void Polyline(const double* xy, int n) override { Put("polyline", n, xy[0], xy[1], xy[2], xy[3]); }
    void Point(double x, double y) override { Put("point", x, y); }
    void Arc(double x, double y, double r, double start, double end) override { Put("arc", x, y, r, start, end); }
    void Text(int j, double x, double y, double h, double angle, const char* text) override {
        Put("text", j, x, y, h, angle, text);
    }
    void SetLay(const char* name) override { Put("lay", name != nullptr ? name : "null"); }
    void SetColor(int color) override { Put("color", color); }
    void SetLtype(const char* name) override { Put("ltype", name); }
    void SetStyle(int type, const char* name, const char* font, double width, double oblique) override {
        Put("style", type, name, font, width, oblique);
    }
    void SetElev(double elevation, double thickness) override { Put("elev", elevation, thickness); }
    void Insert(double x, double y, double sx, double sy, double angle, const char* name) override {
        Put("insert", x, y, sx, sy, angle, name);
    }
    std::vector<std::string> calls;

 private:
    template <typename... Values>
    void Put(const char* name, Values... values) {
        std::ostringstream call;
        call << name;
        ((call << ' ' << values), ...);
        calls.push_back(call.str());
    }
};

void CallAll() {
    const double xy[] = {1, 2, 3, 4};
    _LDBline(1, 2, 3, 4);
    _LDBpolyline(xy, 2);
    _LDBpoint(1, 2);
    _LDBarc(1, 2, 3, 4, 5);
    _LDBtext(1, 2, 3, 4, 5, "text");
    SetLay("road");
    _LDBsetlay(nullptr);
    _LDBsetcolor(300);
    SetLtype("nosuch");
    SetStyle(1, "song", "txt,hz", 0.5, 18);
    _LDBsetelev(1, 2);
    _LDBinsert(1, 2, 3, 4, 5, "TREE");
}

TEST_F(DrawingTest, ATraceReceivesTheCallsAsTheyWereMade) {
    Recorder recorder;
    EXPECT_EQ(test::SetTrace(&recorder), nullptr);
    CallAll();
    EXPECT_EQ(test::SetTrace(nullptr), &recorder);
    const std::vector<std::string> expected = {"line 1 2 3 4",
                                               "polyline 2 1 2 3 4",
                                               "point 1 2",
                                               "arc 1 2 3 4 5",
                                               "text 1 2 3 4 5 text",
                                               "lay road",
                                               "lay null",
                                               "color 300",
                                               "ltype nosuch",
                                               "style 1 song txt,hz 0.5 18",
                                               "elev 1 2",
                                               "insert 1 2 3 4 5 TREE"};
    EXPECT_EQ(recorder.calls, expected);
    EXPECT_TRUE(host.boxes.empty());
}

TEST_F(DrawingTest, WhatATraceReceivesReachesNeitherTheFileNorTheAttributes) {
    Open();
    test::Trace nothing;
    test::SetTrace(&nothing);
    CallAll();
    test::SetTrace(nullptr);
    EXPECT_EQ(dwg::state().now.color, 7);
    EXPECT_EQ(dwg::state().now.elevation, 0);
    EXPECT_EQ(Close().bytes(), drawingTemplate);
}

}  // namespace
}  // namespace zm::test
