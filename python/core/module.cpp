// The Python module zenromath._core: the library's functions over numpy arrays. What users see of it is the package
// zenromath, which lies beside it.
#include "python/core/bindings.h"
#include "python/core/library.h"

PYBIND11_MODULE(_core, module) {
    module.doc() = "The compiled part of zenromath. Import zenromath instead.";
    module.attr("__version__") = ZENRO_VERSION;
    zm::python::AddLibrary(module);
    zm::python::AddGeodesy(module);
    zm::python::AddGeometry(module);
    zm::python::AddClip(module);
    zm::python::AddMap(module);
    zm::python::AddDrawings(module);
}
