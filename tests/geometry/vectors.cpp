// Handlers of the recorded calls of lines, arcs, curves and parallel lines.
#include <algorithm>
#include <string>
#include <vector>

#include "geometry/lines.h"
#include "tests/geometry/with_mini.h"
#include "tests/support/test_host.h"
#include "tests/vector_runner/registry.h"
#include "zenromath/geometry.h"

namespace {

using zm::test::GeometryCall;
using zm::vectors::Bytes;
using zm::vectors::FromHex;
using zm::vectors::FromReal;
using zm::vectors::FromReals;
using zm::vectors::Json;
using zm::vectors::Real;
using zm::vectors::Reals;
using zm::vectors::ToHex;

double In(const Json& in, const char* name) {
    return Real(in.at(name));
}
int Int(const Json& in, const char* name) {
    return in.at(name).get<int>();
}

// A value that a call may leave unchanged, its own or a mark.
double Before(const Json& in, const char* name) {
    return in.contains(name) ? Real(in.at(name)) : -987654.5;
}

const GeometryCall kSetMini("SetMINI", [](const Json& in, Json& out) {
    std::vector<double> rets;
    const double previous = SetMINI(1e-08);
    for (double value : Reals(in.at("values"))) rets.push_back(SetMINI(value));
    SetMINI(previous);
    out["rets"] = FromReals(rets.data(), rets.size());
});

const GeometryCall kPtor("ptor", [](const Json& in, Json& out) {
    double x = In(in, "x");
    double y = In(in, "y");
    out["ret"] = ptor(x, y, In(in, "r"), In(in, "angle"));
    out["x"] = FromReal(x);
    out["y"] = FromReal(y);
});

const GeometryCall kRtop("rtop", [](const Json& in, Json& out) {
    double r = Before(in, "r");
    double angle = In(in, "angle");
    out["ret"] = rtop(In(in, "x"), In(in, "y"), r, angle);
    out["r"] = FromReal(r);
    out["angle"] = FromReal(angle);
});

const GeometryCall kXysa("XYSA", [](const Json& in, Json& out) {
    double x = In(in, "x");
    double y = In(in, "y");
    double s = In(in, "s");
    double a = In(in, "a");
    XYSA(In(in, "x0"), In(in, "y0"), &x, &y, &s, &a, static_cast<char>(Int(in, "flag")));
    out["x"] = FromReal(x);
    out["y"] = FromReal(y);
    out["s"] = FromReal(s);
    out["a"] = FromReal(a);
});

const GeometryCall kCrossP("Cross_P", [](const Json& in, Json& out) {
    double X = In(in, "X");
    double Y = In(in, "Y");
    out["ret"] = Cross_P(X, Y, In(in, "x1"), In(in, "y1"), In(in, "x2"), In(in, "y2"), In(in, "x3"), In(in, "y3"),
                         In(in, "x4"), In(in, "y4"));
    out["X"] = FromReal(X);
    out["Y"] = FromReal(Y);
});

const GeometryCall kNormIntersect("norm_intersect", [](const Json& in, Json& out) {
    std::vector<double> pairs = Reals(in.at("pairs"));
    double X = In(in, "X");
    double Y = In(in, "Y");
    out["ret"] = norm_intersect(In(in, "x1"), In(in, "y1"), In(in, "x2"), In(in, "y2"), pairs.data(),
                                static_cast<int>(pairs.size() / 2), X, Y);
    out["X"] = FromReal(X);
    out["Y"] = FromReal(Y);
});

const GeometryCall kMyCrossRect("MyCrossRect", [](const Json& in, Json& out) {
    out["ret"] = MyCrossRect(In(in, "x1"), In(in, "y1"), In(in, "x2"), In(in, "y2"), In(in, "left"), In(in, "bottom"),
                             In(in, "right"), In(in, "top"));
});

const GeometryCall kChuizu("CHUIZU", [](const Json& in, Json& out) {
    std::vector<double> line = Reals(in.at("in6"));
    double foot[2];
    CHUIZU(line.data(), foot);
    out["out"] = FromReals(foot, 2);
});

const GeometryCall kPtDist2Line("PtDist2Line", [](const Json& in, Json& out) {
    out["ret"] =
        FromReal(PtDist2Line(In(in, "px"), In(in, "py"), In(in, "x1"), In(in, "y1"), In(in, "x2"), In(in, "y2")));
});

const GeometryCall kGetdist("getdist", [](const Json& in, Json& out) {
    std::vector<double> x = Reals(in.at("x"));
    std::vector<double> y = Reals(in.at("y"));
    out["ret"] = FromReal(getdist(In(in, "px"), In(in, "py"), static_cast<int>(x.size()), x.data(), y.data()));
});

const GeometryCall kGetDistBering("GetDistBering", [](const Json& in, Json& out) {
    std::vector<double> x = Reals(in.at("x"));
    std::vector<double> y = Reals(in.at("y"));
    int index = -99;
    int side = Int(in, "side");
    out["ret"] = FromReal(
        GetDistBering(In(in, "px"), In(in, "py"), static_cast<int>(x.size()), x.data(), y.data(), index, side));
    out["index"] = index;
    out["side"] = side;
});

const GeometryCall kAbcIsClockwise("AbcIsClockwise", [](const Json& in, Json& out) {
    out["ret"] = AbcIsClockwise(In(in, "ax"), In(in, "ay"), In(in, "bx"), In(in, "by"), In(in, "cx"), In(in, "cy"),
                                In(in, "tol"));
});

const GeometryCall kVertAnglePoint("VertAnglePoint", [](const Json& in, Json& out) {
    double px = In(in, "px");
    double py = In(in, "py");
    out["ret"] = VertAnglePoint(In(in, "x1"), In(in, "y1"), In(in, "x2"), In(in, "y2"), &px, &py);
    out["px"] = FromReal(px);
    out["py"] = FromReal(py);
});

const GeometryCall kGrdbodyRotate("GrdbodyRotate", [](const Json& in, Json& out) {
    double X = 0.0;
    double Y = 0.0;
    out["ret"] = GrdbodyRotate(In(in, "tx"), In(in, "ty"), In(in, "angle"), In(in, "cx"), In(in, "cy"), In(in, "x"),
                               In(in, "y"), X, Y);
    out["X"] = FromReal(X);
    out["Y"] = FromReal(Y);
});

const GeometryCall kPtInPoly("PtInPoly", [](const Json& in, Json& out) {
    std::vector<double> x = Reals(in.at("x"));
    std::vector<double> y = Reals(in.at("y"));
    out["ret"] = PtInPoly(x.data(), y.data(), static_cast<int>(x.size()), In(in, "px"), In(in, "py"));
});

const GeometryCall kPtInPolyEdge("PtInPolyEdge", [](const Json& in, Json& out) {
    std::vector<double> x = Reals(in.at("x"));
    std::vector<double> y = Reals(in.at("y"));
    out["ret"] = PtInPolyEdge(static_cast<int>(x.size()), x.data(), y.data(), In(in, "px"), In(in, "py"));
});

const GeometryCall kReverseLine("reverse_line", [](const Json& in, Json& out) {
    const bool none = in.at("hex").is_null();
    std::string bytes = none ? std::string() : FromHex(in.at("hex").get<std::string>());
    out["ret"] = reverse_line(none ? nullptr : bytes.data(), Int(in, "n"), Int(in, "size"));
    out["hex"] = none ? Json(nullptr) : Json(ToHex(bytes));
});

const GeometryCall kNormCross("NormCross", [](const Json& in, Json& out) {
    out["ret"] = FromReal(
        zm::geometry::NormCross(In(in, "ax"), In(in, "ay"), In(in, "bx"), In(in, "by"), In(in, "cx"), In(in, "cy")));
});
const GeometryCall kSignOf("SignOf", [](const Json& in, Json& out) {
    out["ret"] = zm::geometry::SignOf(In(in, "value"), In(in, "tol"));
});
const GeometryCall kLineDist("LineDist", [](const Json& in, Json& out) {
    out["ret"] = FromReal(
        zm::geometry::LineDist(In(in, "px"), In(in, "py"), In(in, "x1"), In(in, "y1"), In(in, "x2"), In(in, "y2")));
});
const GeometryCall kLineHeight("LineHeight", [](const Json& in, Json& out) {
    out["ret"] = FromReal(
        zm::geometry::LineHeight(In(in, "px"), In(in, "py"), In(in, "ax"), In(in, "ay"), In(in, "bx"), In(in, "by")));
});
const GeometryCall kValueBetween("ValueBetween", [](const Json& in, Json& out) {
    out["ret"] = zm::geometry::ValueBetween(In(in, "v"), In(in, "a"), In(in, "b"));
});

const GeometryCall kCircle("theerP_circle_cr", [](const Json& in, Json& out) {
    std::vector<double> x = Reals(in.at("x"));
    std::vector<double> y = Reals(in.at("y"));
    double cx = 0.0;
    double cy = 0.0;
    double r = 0.0;
    out["ret"] = theerP_circle_cr(x.data(), y.data(), cx, cy, r);
    out["cx"] = FromReal(cx);
    out["cy"] = FromReal(cy);
    out["r"] = FromReal(r);
});

const GeometryCall kDrawArc1("DRAWARC1", [](const Json& in, Json& out) {
    const char* names[] = {"x1", "y1", "x2", "y2", "x3", "y3", "r"};
    double v[7];
    for (int i = 0; i < 7; ++i) v[i] = In(in, names[i]);
    out["ret"] = DRAWARC1(&v[0], &v[1], &v[2], &v[3], &v[4], &v[5], &v[6]);
    for (int i = 0; i < 7; ++i) out[names[i]] = FromReal(v[i]);
});

const GeometryCall kArcStepCount("ArcStepCount", [](const Json& in, Json& out) {
    double step = 0.0;
    int count = 0;
    out["ret"] = ArcStepCount(In(in, "prec"), In(in, "radius"), In(in, "sweep"), &step, &count);
    out["step"] = FromReal(step);
    out["count"] = count;
});

// Room for whatever a list of n points may come to.
std::vector<double> Room(std::size_t n) {
    return std::vector<double>(2 * std::max<std::size_t>(5 * n + 1, 4001));
}

// Runs a flattening that may write nothing.
template <class Flatten>
void RunFlatten(Json& out, std::size_t n, Flatten flatten) {
    std::vector<double> pairs = Room(n);
    int count = -1;
    flatten(pairs.data(), &count);
    out["written"] = count >= 0;
    if (count < 0) return;
    out["count"] = count;
    out["pairs"] = FromReals(pairs.data(), 2 * static_cast<std::size_t>(count));
}

const GeometryCall kArcToPoints("ArcToPoints", [](const Json& in, Json& out) {
    std::vector<double> x = Reals(in.at("x"));
    std::vector<double> y = Reals(in.at("y"));
    RunFlatten(out, x.size(), [&](double* pairs, int* count) {
        ArcToPoints(static_cast<int>(x.size()), x.data(), y.data(), pairs, count, In(in, "prec"));
    });
});

const GeometryCall kCircleToPoints("CircleToPoints", [](const Json& in, Json& out) {
    std::vector<double> x = Reals(in.at("x"));
    std::vector<double> y = Reals(in.at("y"));
    RunFlatten(out, x.size(), [&](double* pairs, int* count) {
        CircleToPoints(Int(in, "direction"), static_cast<int>(x.size()), x.data(), y.data(), pairs, count,
                       In(in, "prec"));
    });
});

const GeometryCall kMulArc2Straight("MulArc2Straight", [](const Json& in, Json& out) {
    std::vector<double> x = Reals(in.at("x"));
    std::vector<double> y = Reals(in.at("y"));
    const auto codes = in.at("codes").get<std::string>();
    const int n = static_cast<int>(x.size());
    const std::size_t room = 4001 * (x.size() + 1);
    std::vector<double> pairs(2 * room);
    zm::test::TestHost host;
    const int count = MulArc2Straight(n, x.data(), y.data(), codes.c_str(), pairs.data(), In(in, "prec"));
    out["reports"] = host.boxes.size();
    out["ret"] = count;
    // The other form gives the same points, else the record fails by its length.
    std::vector<double> outX(room);
    std::vector<double> outY(room);
    const int second = MulArc2Straight(n, x.data(), y.data(), codes.c_str(), static_cast<int>(room), outX.data(),
                                       outY.data(), In(in, "prec"));
    bool same = second == count;
    for (std::size_t i = 0; same && i < static_cast<std::size_t>(count); ++i)
        same = outX[i] == pairs[2 * i] && outY[i] == pairs[2 * i + 1];
    out["pairs"] = same ? FromReals(pairs.data(), 2 * static_cast<std::size_t>(count)) : Json("the two forms differ");
});

const GeometryCall kGotoPoints("GOTOPOINTS", [](const Json& in, Json& out) {
    std::vector<double> x = Reals(in.at("x"));
    std::vector<double> y = Reals(in.at("y"));
    std::vector<double> pairs = Room(x.size());
    int count = -1;
    GOTOPOINTS(static_cast<int>(x.size()), Int(in, "kind"), x.data(), y.data(), pairs.data(), &count, In(in, "prec"));
    out["count"] = count;
    out["pairs"] = FromReals(pairs.data(), 2 * static_cast<std::size_t>(std::max(count, 0)));
});

const GeometryCall kBspline("bspline", [](const Json& in, Json& out) {
    std::vector<double> x = Reals(in.at("x"));
    std::vector<double> y = Reals(in.at("y"));
    bspline(x.data(), y.data(), static_cast<int>(x.size()) - 1);
    out["x"] = FromReals(x.data(), x.size());
    out["y"] = FromReals(y.data(), y.size());
});

const GeometryCall kSplineToPoints("SplineToPoints", [](const Json& in, Json& out) {
    std::vector<double> x = Reals(in.at("x"));
    std::vector<double> y = Reals(in.at("y"));
    // Exactly the room that the curve needs.
    std::vector<double> pairs(x.empty() ? 0 : 2 * (1 + 5 * (x.size() - 1)));
    int count = -1;
    SplineToPoints(static_cast<int>(x.size()), x.data(), y.data(), pairs.data(), &count);
    out["count"] = count;
    out["pairs"] = FromReals(pairs.data(), 2 * static_cast<std::size_t>(std::max(count, 0)));
});

const GeometryCall kParallel("parallel", [](const Json& in, Json& out) {
    std::vector<double> x = Reals(in.at("x"));
    std::vector<double> y = Reals(in.at("y"));
    std::vector<double> outX(x.size());
    std::vector<double> outY(y.size());
    out["ret"] = parallel(static_cast<int>(x.size()), x.data(), y.data(), outX.data(), outY.data(), In(in, "dist"),
                          Int(in, "side"));
    out["outX"] = FromReals(outX.data(), outX.size());
    out["outY"] = FromReals(outY.data(), outY.size());
});

}  // namespace
