// The parts of the Python module. Each adds its functions and classes.
#pragma once

#include <pybind11/pybind11.h>

namespace zm::python {

void AddGeodesy(pybind11::module_& module);
void AddGeometry(pybind11::module_& module);
void AddClip(pybind11::module_& module);
void AddMap(pybind11::module_& module);
void AddDrawings(pybind11::module_& module);

}  // namespace zm::python
