// numpy arrays of doubles in and out: taken as they lie where they are contiguous, copied only where they are not.
#pragma once

#include <pybind11/numpy.h>
#include <pybind11/pybind11.h>

#include <stdexcept>
#include <string>
#include <vector>

namespace zm::python {

namespace py = pybind11;

/// Any sequence of numbers, as doubles one after the other.
using Doubles = py::array_t<double, py::array::c_style | py::array::forcecast>;

/// The shape of an array, for another one like it.
inline std::vector<py::ssize_t> ShapeOf(const Doubles& array) {
    return {array.shape(), array.shape() + array.ndim()};
}

/// Throws ValueError, naming both, where the shapes differ.
inline void RequireSameShape(const char* firstName, const Doubles& first, const char* secondName,
                             const Doubles& second) {
    if (ShapeOf(first) != ShapeOf(second))
        throw py::value_error(std::string(firstName) + " and " + secondName + " must have the same shape: " +
                              std::to_string(first.size()) + " and " + std::to_string(second.size()) + " numbers");
}

/// Throws ValueError where an array is not one row of at least least numbers.
inline void RequireRow(const char* name, const Doubles& array, py::ssize_t least) {
    if (array.ndim() != 1 || array.size() < least)
        throw py::value_error(std::string(name) + " must be one row of at least " + std::to_string(least) +
                              " numbers, not an array of " + std::to_string(array.ndim()) + " dimensions with " +
                              std::to_string(array.size()) + " numbers");
}

/// The number of points as the library counts them. Throws ValueError where it is too large for that.
inline int CountOf(const Doubles& array) {
    if (array.size() > 0x3FFFFFFF) throw py::value_error("more than 1,073,741,823 points");
    return static_cast<int>(array.size());
}

/// An array of no dimensions becomes a plain float.
inline py::object Plain(Doubles array) {
    if (array.ndim() == 0) return py::float_(*array.data());
    return array;
}

}  // namespace zm::python
