// Plane geometry: intersections, polygons, curves, parallel lines, heights.
#include "zenromath/geometry.h"

#include <algorithm>
#include <cmath>
#include <memory>
#include <tuple>
#include <vector>

#include "python/core/arrays.h"
#include "python/core/bindings.h"
#include "python/core/library.h"
#include "zenromath/draw.h"

namespace zm::python {
namespace {

// The library takes pointers to what it does not write to.
double* In(const Doubles& array) {
    return const_cast<double*>(array.data());
}

void RequireLine(const Doubles& x, const Doubles& y, py::ssize_t least) {
    RequireRow("x", x, least);
    RequireSameShape("x", x, "y", y);
    CountOf(x);
}

py::object Cross(std::tuple<double, double, double, double> a, std::tuple<double, double, double, double> b) {
    double x = 0.0, y = 0.0;
    const auto [x1, y1, x2, y2] = a;
    const auto [x3, y3, x4, y4] = b;
    const int result = Cross_P(x, y, x1, y1, x2, y2, x3, y3, x4, y4);
    if (result < 0) return py::none();
    return py::make_tuple(x, y, result == 0);
}

// A clip area has an index of its edges and the same answers: worth while for many points, and where all are numbers.
bool IsWorthAnIndex(const Doubles& x, const Doubles& y, const Doubles& px) {
    constexpr py::ssize_t kVertices = 24, kPoints = 50;
    if (x.size() < kVertices || px.size() < kPoints) return false;
    const auto finite = [](double v) { return std::isfinite(v); };
    return std::all_of(x.data(), x.data() + x.size(), finite) && std::all_of(y.data(), y.data() + y.size(), finite);
}

py::object Side(const Doubles& x, const Doubles& y, const Doubles& px, const Doubles& py_) {
    RequireLine(x, y, 0);
    RequireSameShape("px", px, "py", py_);
    py::array_t<int> sides(ShapeOf(px));
    int* side = sides.mutable_data();
    const int n = static_cast<int>(x.size());
    if (IsWorthAnIndex(x, y, px)) {
        CCutArea area(1);
        area.setcutarea(n, In(x), In(y));
        double left = 0.0, top = 0.0, right = 0.0, bottom = 0.0;
        area.getcutarea(left, top, right, bottom);
        constexpr double kNear = 1e-6;  // more than the reach of an edge, which the area's box cuts off
        for (py::ssize_t i = 0; i < px.size(); ++i) {
            const double a = px.data()[i], b = py_.data()[i];
            const bool inBox = a >= left && a <= right && b >= bottom && b <= top;
            const bool far = a < left - kNear || a > right + kNear || b < bottom - kNear || b > top + kNear;
            side[i] = far ? 0 : inBox ? area.cutpoint(a, b) : PtInPolyEdge(n, In(x), In(y), a, b);
        }
    } else {
        for (py::ssize_t i = 0; i < px.size(); ++i)
            side[i] = PtInPolyEdge(n, In(x), In(y), px.data()[i], py_.data()[i]);
    }
    if (px.ndim() == 0) return py::int_(*side);
    return sides;
}

Doubles DistanceTo(const Doubles& x, const Doubles& y, const Doubles& px, const Doubles& py_) {
    RequireLine(x, y, 1);
    RequireSameShape("px", px, "py", py_);
    Doubles distances(ShapeOf(px));
    for (py::ssize_t i = 0; i < px.size(); ++i)
        distances.mutable_data()[i] = getdist(px.data()[i], py_.data()[i], static_cast<int>(x.size()), In(x), In(y));
    return distances;
}

py::tuple Parallel(const Doubles& x, const Doubles& y, double distance, bool right) {
    RequireLine(x, y, 2);
    if (!std::isfinite(distance)) throw py::value_error("the distance of a parallel line must be a finite number");
    Doubles outX(x.size()), outY(x.size());
    parallel(static_cast<int>(x.size()), In(x), In(y), outX.mutable_data(), outY.mutable_data(), distance,
             right ? 1 : 0);
    return py::make_tuple(outX, outY);
}

// Pairs as two arrays.
py::tuple Parted(const std::vector<double>& pairs, int count) {
    Doubles x(count), y(count);
    for (int i = 0; i < count; ++i) {
        x.mutable_data()[i] = pairs[2 * static_cast<std::size_t>(i)];
        y.mutable_data()[i] = pairs[2 * static_cast<std::size_t>(i) + 1];
    }
    return py::make_tuple(x, y);
}

py::tuple Spline(const Doubles& x, const Doubles& y) {
    RequireLine(x, y, 2);
    const auto n = static_cast<std::size_t>(x.size());
    std::vector<double> pairs(2 * (1 + 5 * (n - 1)));
    int count = 0;
    SplineToPoints(static_cast<int>(n), In(x), In(y), pairs.data(), &count);
    return Parted(pairs, count);
}

py::tuple Arc(const Doubles& x, const Doubles& y, double scale) {
    RequireLine(x, y, 3);
    if (x.size() != 3) throw py::value_error("an arc goes through 3 points, not " + std::to_string(x.size()));
    double cx = 0.0, cy = 0.0, r = 0.0;
    if (theerP_circle_cr(In(x), In(y), cx, cy, r) == 0)
        throw py::value_error("the three points lie on a line or coincide: no arc goes through them");
    constexpr std::size_t kMostPoints = 4001;
    std::vector<double> pairs(2 * kMostPoints);
    int count = 0;
    ArcToPoints(3, In(x), In(y), pairs.data(), &count, scale);
    return Parted(pairs, count);
}

/// The heights of known points. The library lets one such table at a time set the elevations of a drawing file: maps
/// put an empty one of their own in force while they are drawn, so that these tables answer questions and no more.
class Heights {
 public:
    Heights(const Doubles& x, const Doubles& y, const Doubles& h) {
        const Guard library;
        m_table = std::make_unique<Find4H>(0, nullptr, nullptr, nullptr);
        Append(x, y, h);
    }
    ~Heights() {
        const Guard library;
        m_table.reset();
    }
    void Append(const Doubles& x, const Doubles& y, const Doubles& h) {
        RequireLine(x, y, 0);
        RequireSameShape("x", x, "h", h);
        const Guard library;
        if (x.size() > 0 && m_table->AppendDate(static_cast<int>(x.size()), In(x), In(y), In(h)) == 0)
            throw std::bad_alloc();
        m_size += static_cast<std::size_t>(x.size());
    }
    py::object Find(const Doubles& x, const Doubles& y) {
        RequireSameShape("x", x, "y", y);
        Doubles heights(ShapeOf(x));
        const Guard library;
        for (py::ssize_t i = 0; i < x.size(); ++i) heights.mutable_data()[i] = m_table->FindH(x.data()[i], y.data()[i]);
        return Plain(heights);
    }
    std::size_t size() const { return m_size; }

 private:
    std::unique_ptr<Find4H> m_table;
    std::size_t m_size = 0;
};

}  // namespace

void AddGeometry(py::module_& m) {
    m.def("cross", Cross, py::arg("first"), py::arg("second"),
          "Where two lines, each (x1, y1, x2, y2), meet: (x, y, whether on both segments); None where they are "
          "parallel or one has no length.");
    m.def("point_in_polygon", Side, py::arg("x"), py::arg("y"), py::arg("px"), py::arg("py"),
          "1 inside, 0 outside, -1 within 1e-7 of an edge, for one point or an array of them.");
    m.def("distance_to_line", DistanceTo, py::arg("x"), py::arg("y"), py::arg("px"), py::arg("py"),
          "The least distance from points to a polyline.");
    m.def("parallel", Parallel, py::arg("x"), py::arg("y"), py::arg("distance"), py::kw_only(), py::arg("right") = true,
          "The parallel line at a distance, vertex for vertex: (x, y). Closed where the ends agree within 1e-8.");
    m.def("spline", Spline, py::arg("x"), py::arg("y"),
          "The curve through all points, five points for each span: (x, y). Closed where the ends agree within 0.02.");
    m.def("arc", Arc, py::arg("x"), py::arg("y"), py::arg("scale") = 1000.0,
          "The arc through three points, in steps of 0.002 * scale: (x, y).");
    py::class_<Heights>(m, "Find4H",
                        "Heights of known points: find gives the height of the first point within 0.1 of a position "
                        "(|dx| + |dy|), 0.0 where there is none or it is above 9000.")
        .def(py::init<const Doubles&, const Doubles&, const Doubles&>(), py::arg("x"), py::arg("y"), py::arg("h"))
        .def("append", &Heights::Append, py::arg("x"), py::arg("y"), py::arg("h"), "Adds points after those present.")
        .def("find", &Heights::Find, py::arg("x"), py::arg("y"), "The height at a position, or at many.")
        .def("__len__", &Heights::size);
}

}  // namespace zm::python
