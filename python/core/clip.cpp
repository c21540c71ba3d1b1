// Clipping by a rectangle or a polygon.
#include <memory>
#include <optional>
#include <tuple>
#include <vector>

#include "python/core/arrays.h"
#include "python/core/bindings.h"
#include "zenromath/draw.h"

namespace zm::python {
namespace {

/// A clip area of the library's, switched on.
class Area {
 public:
    Area(double x1, double y1, double x2, double y2) { m_area.setcutarea(x1, y1, x2, y2); }
    Area(const Doubles& x, const Doubles& y) {
        RequireRow("x", x, 3);
        RequireSameShape("x", x, "y", y);
        m_area.setcutarea(CountOf(x), const_cast<double*>(x.data()), const_cast<double*>(y.data()));
    }
    py::object Where(const Doubles& x, const Doubles& y) {
        RequireSameShape("x", x, "y", y);
        py::array_t<int> answers(ShapeOf(x));
        for (py::ssize_t i = 0; i < x.size(); ++i)
            answers.mutable_data()[i] = m_area.cutpoint(x.data()[i], y.data()[i]);
        if (x.ndim() == 0) return py::int_(*answers.data());
        return answers;
    }
    py::object Line(double x1, double y1, double x2, double y2) {
        if (m_area.cutline(x1, y1, x2, y2) == 0) return py::none();
        return py::make_tuple(x1, y1, x2, y2);
    }
    // Segments as rows of four; those of which nothing remains are left out.
    py::tuple Lines(const Doubles& segments) {
        if (segments.ndim() != 2 || segments.shape(1) != 4)
            throw py::value_error("segments must be rows of four numbers: x1, y1, x2, y2");
        std::vector<double> kept;
        std::vector<long long> rows;
        for (py::ssize_t i = 0; i < segments.shape(0); ++i) {
            const double* s = segments.data() + 4 * i;
            double x1 = s[0], y1 = s[1], x2 = s[2], y2 = s[3];
            if (m_area.cutline(x1, y1, x2, y2) == 0) continue;
            kept.insert(kept.end(), {x1, y1, x2, y2});
            rows.push_back(i);
        }
        Doubles result({static_cast<py::ssize_t>(rows.size()), py::ssize_t{4}});
        std::copy(kept.begin(), kept.end(), result.mutable_data());
        return py::make_tuple(result, py::array_t<long long>(static_cast<py::ssize_t>(rows.size()), rows.data()));
    }

 private:
    CCutArea m_area{1};
};

}  // namespace

void AddClip(py::module_& m) {
    py::class_<Area>(m, "ClipArea", "A clip area: ClipArea(x1, y1, x2, y2) is a rectangle, ClipArea(x, y) a polygon.")
        .def(py::init<double, double, double, double>(), py::arg("x1"), py::arg("y1"), py::arg("x2"), py::arg("y2"))
        .def(py::init<const Doubles&, const Doubles&>(), py::arg("x"), py::arg("y"))
        .def("where", &Area::Where, py::arg("x"), py::arg("y"),
             "1 inside, 0 outside; on the edge 1 of a rectangle, -1 of a polygon (within 1e-7).")
        .def("line", &Area::Line, py::arg("x1"), py::arg("y1"), py::arg("x2"), py::arg("y2"),
             "The part of a segment inside, None if nothing is. A concave polygon gives one part at most.")
        .def("lines", &Area::Lines, py::arg("segments"),
             "(parts, rows): the parts of many segments inside, four numbers each, and the rows they come from.");
}

}  // namespace zm::python
