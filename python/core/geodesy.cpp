// Angles, zones, the projection, distance and area on the ellipsoid.
#include "zenromath/geodesy.h"

#include <pybind11/stl.h>

#include <algorithm>
#include <cmath>
#include <future>
#include <optional>
#include <thread>
#include <tuple>
#include <vector>

#include "python/core/arrays.h"
#include "python/core/bindings.h"

namespace zm::python {
namespace {

// Calls work for the pieces of a list of n, on as many processors as are worth while. Each number is what it is alone.
template <class Work>
void InPieces(std::size_t n, Work work) {
    constexpr std::size_t kWorthwhile = 50000;  // numbers; a thread costs about as much as a thousand
    constexpr std::size_t kMost = 8;
    const std::size_t processors = std::max(1U, std::thread::hardware_concurrency());
    const std::size_t pieces = std::clamp<std::size_t>(n / kWorthwhile, 1, std::min(processors, kMost));
    std::vector<std::future<void>> others;
    for (std::size_t i = 1; i < pieces; ++i)
        others.push_back(std::async(std::launch::async, work, n * i / pieces, n * (i + 1) / pieces));
    work(0, n / pieces);
    for (std::future<void>& other : others) other.get();
}

// ell, first, second to two arrays and, if asked for, the convergence.
template <class Work>
py::tuple Project(const char* firstName, const Doubles& first, const char* secondName, const Doubles& second,
                  bool convergence, Work work) {
    RequireSameShape(firstName, first, secondName, second);
    const auto shape = ShapeOf(first);
    Doubles a(shape), b(shape), gamma(convergence ? shape : std::vector<py::ssize_t>{0});
    const double* in1 = first.data();
    const double* in2 = second.data();
    double* out1 = a.mutable_data();
    double* out2 = b.mutable_data();
    double* out3 = convergence ? gamma.mutable_data() : nullptr;
    const auto n = static_cast<std::size_t>(first.size());
    {
        const py::gil_scoped_release others;
        InPieces(n, [=](std::size_t from, std::size_t to) {
            work(to - from, in1 + from, in2 + from, out1 + from, out2 + from, out3 != nullptr ? out3 + from : nullptr);
        });
    }
    if (convergence) return py::make_tuple(Plain(a), Plain(b), Plain(gamma));
    return py::make_tuple(Plain(a), Plain(b));
}

py::tuple Forward(int ell, const Doubles& B, const Doubles& l, bool convergence) {
    return Project("B", B, "l", l, convergence,
                   [ell](std::size_t n, auto... arrays) { ForwardArray(ell, n, arrays...); });
}

py::tuple Backward(int ell, const Doubles& x, const Doubles& y, bool convergence) {
    return Project("x", x, "y", y, convergence,
                   [ell](std::size_t n, auto... arrays) { BackwardArray(ell, n, arrays...); });
}

py::tuple Inverse(int ell, const Doubles& x, const Doubles& y) {
    return Project("x", x, "y", y, false,
                   [ell](std::size_t n, const double* in1, const double* in2, double* out1, double* out2, double*) {
                       InverseOfForwardArray(ell, n, in1, in2, out1, out2);
                   });
}

// The zone of longitudes in degrees by the rule of Coordinate_2Dsys::setL, which truncates towards zero: number and
// central meridian. Taken in degrees, so that a border such as 120 is not moved by its radians.
py::tuple Zone(const Doubles& longitude, int width) {
    if (width != 3 && width != 6) throw py::value_error("width must be 3 or 6 degrees, not " + std::to_string(width));
    const auto shape = ShapeOf(longitude);
    py::array_t<int> number(shape), meridian(shape);
    for (py::ssize_t i = 0; i < longitude.size(); ++i) {
        const double degrees = longitude.data()[i];
        if (!(std::fabs(degrees) <= 360.0))
            throw py::value_error("longitude " + std::to_string(degrees) + " is outside -360 to 360 degrees");
        const int middle =
            width == 3 ? 3 * static_cast<int>((degrees + 1.5) / 3.0) : 3 - 6 * static_cast<int>(degrees / -6.0);
        meridian.mutable_data()[i] = middle;
        number.mutable_data()[i] = width == 3 ? middle / 3 : (middle + 3) / 6;
    }
    if (longitude.ndim() == 0) return py::make_tuple(*number.data(), *meridian.data());
    return py::make_tuple(number, meridian);
}

std::vector<Point3D> PointsOf(const double* longitude, const double* latitude, py::ssize_t n) {
    std::vector<Point3D> points(static_cast<std::size_t>(n));
    for (std::size_t i = 0; i < points.size(); ++i) points[i] = {longitude[i], latitude[i], 0.0};
    return points;
}

// Latitudes that are none give results that look like some.
void RequireGeodetic(const Doubles& longitude, const Doubles& latitude) {
    RequireSameShape("longitude", longitude, "latitude", latitude);
    RequireRow("longitude", longitude, 0);
    for (py::ssize_t i = 0; i < latitude.size(); ++i) {
        if (!(std::fabs(latitude.data()[i]) <= 90.0))
            throw py::value_error("latitude " + std::to_string(latitude.data()[i]) + " of point " + std::to_string(i) +
                                  " is outside -90 to 90 degrees; longitude comes first");
        if (!(std::fabs(longitude.data()[i]) <= 360.0))
            throw py::value_error("longitude " + std::to_string(longitude.data()[i]) + " of point " +
                                  std::to_string(i) + " is outside -360 to 360 degrees");
    }
}

DistandAreaInquiry Inquiry(const double* longitude, const double* latitude, py::ssize_t n, bool plane, int system) {
    const std::vector<Point3D> points = PointsOf(longitude, latitude, n);
    DistandAreaInquiry inquiry(points.data(), static_cast<int>(n), plane ? 0 : 1);
    inquiry.SetEllipse(static_cast<znCoordSysTypeConstants>(system));
    return inquiry;
}

double Distance(const Doubles& longitude, const Doubles& latitude, bool closed, bool plane, int system) {
    RequireGeodetic(longitude, latitude);
    CountOf(longitude);
    const DistandAreaInquiry inquiry = Inquiry(longitude.data(), latitude.data(), longitude.size(), plane, system);
    return closed ? inquiry.GetCloseDist() : inquiry.GetDist();
}

// The library leaves a ring as open as it is on the ellipsoid: it is closed here.
double AreaOf(const double* longitude, const double* latitude, py::ssize_t n, bool plane, int system) {
    std::vector<Point3D> points = PointsOf(longitude, latitude, n);
    if (n > 0 && (points.front().x != points.back().x || points.front().y != points.back().y))
        points.push_back(points.front());
    DistandAreaInquiry inquiry(points.data(), static_cast<int>(points.size()), plane ? 0 : 1);
    inquiry.SetEllipse(static_cast<znCoordSysTypeConstants>(system));
    return inquiry.GetArea();
}

double Area(const Doubles& longitude, const Doubles& latitude, bool plane, int system) {
    RequireGeodetic(longitude, latitude);
    CountOf(longitude);
    return AreaOf(longitude.data(), latitude.data(), longitude.size(), plane, system);
}

Doubles Areas(const Doubles& longitude, const Doubles& latitude, const py::array_t<long long>& starts, bool plane,
              int system) {
    RequireGeodetic(longitude, latitude);
    CountOf(longitude);
    const auto places = starts.unchecked<1>();
    if (places.shape(0) < 1 || places(0) != 0 || places(places.shape(0) - 1) != longitude.size())
        throw py::value_error("starts must begin with 0 and end with the number of points, " +
                              std::to_string(longitude.size()));
    for (py::ssize_t i = 1; i < places.shape(0); ++i)
        if (places(i) < places(i - 1))
            throw py::value_error("starts must not fall: entry " + std::to_string(i) + " is " +
                                  std::to_string(places(i)) + " after " + std::to_string(places(i - 1)));
    Doubles areas(places.shape(0) - 1);
    for (py::ssize_t i = 0; i + 1 < places.shape(0); ++i)
        areas.mutable_data()[i] =
            AreaOf(longitude.data() + places(i), latitude.data() + places(i), places(i + 1) - places(i), plane, system);
    return areas;
}

void AddAngles(py::module_& m) {
    m.def("deg_dms", py::vectorize(deg_dms), py::arg("degrees"),
          "Decimal degrees to packed degrees, minutes and seconds: 30.2575 is 30.1527 (30 degrees 15' 27\").");
    m.def("dms_deg", py::vectorize(dms_deg), py::arg("packed"), "Packed degrees, minutes and seconds to degrees.");
    m.def("dms_sec", py::vectorize(dms_sec), py::arg("packed"),
          "Packed degrees, minutes and seconds to seconds of arc.");
    m.def("dms_rad", py::vectorize(dms_rad), py::arg("packed"), "Packed degrees, minutes and seconds to radians.");
    m.def("rad_dms", py::vectorize(rad_dms), py::arg("radians"), "Radians to packed degrees, minutes and seconds.");
}

}  // namespace

void AddGeodesy(py::module_& m) {
    AddAngles(m);
    m.def("forward", Forward, py::arg("ellipsoid"), py::arg("B"), py::arg("l"), py::kw_only(),
          py::arg("convergence") = false,
          "Geodetic to plane coordinates (Gauss-Krueger, scale 1 on the meridian).\n\n"
          "ellipsoid: 54 Krassovsky 1940, 80 IAG 1975, any other number a = 6378137.0, b = 6356752.31414036 m.\n"
          "B: latitude, l: longitude minus central meridian, both radians, numbers or arrays of one shape.\n"
          "Returns (x, y): northing and easting from the meridian, metres; with convergence=True a third, radians.\n"
          "Meant for one zone, l up to 3 degrees; nothing is checked.");
    m.def("backward", Backward, py::arg("ellipsoid"), py::arg("x"), py::arg("y"), py::kw_only(),
          py::arg("convergence") = false,
          "Plane to geodetic coordinates, the family's historic inverse of forward: for results that must match its "
          "existing data.\n\nThere and back agrees within 1e-10 rad up to 1.5 degrees from the meridian. For a round "
          "trip without loss take inverse_of_forward.");
    m.def("inverse_of_forward", Inverse, py::arg("ellipsoid"), py::arg("x"), py::arg("y"),
          "The inverse that truly undoes forward: (B, l) in radians, within 1e-12 rad up to 4 degrees from the "
          "meridian.");
    m.def("zone", Zone, py::arg("longitude"), py::arg("width") = 3,
          "The zone of longitudes in degrees: (number, central meridian in degrees). width: 3 or 6 degrees.");
    m.def("distance", Distance, py::arg("longitude"), py::arg("latitude"), py::kw_only(), py::arg("closed") = false,
          py::arg("plane") = false, py::arg("system") = static_cast<int>(znCoord84G6),
          "Length of a line, metres; with closed=True the edge from the last point to the first is counted too.\n\n"
          "longitude, latitude: degrees. plane: on the projection plane, where an edge across a zone border has no "
          "useful length.\nsystem: a number of zenromath.System.\nOn the ellipsoid lines towards rising latitude are "
          "off by up to 2 parts in 1000, as the family's data has them.");
    m.def("area", Area, py::arg("longitude"), py::arg("latitude"), py::kw_only(), py::arg("plane") = false,
          py::arg("system") = static_cast<int>(znCoord84G6),
          "Area of a ring, square metres, never negative. longitude, latitude: degrees; the closing edge is implied.");
    m.def("areas", Areas, py::arg("longitude"), py::arg("latitude"), py::arg("starts"), py::kw_only(),
          py::arg("plane") = false, py::arg("system") = static_cast<int>(znCoord84G6),
          "Areas of many rings that lie one after the other; ring i has the points starts[i] to starts[i + 1].");
}

}  // namespace zm::python
