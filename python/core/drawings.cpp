// Drawings read back: tables, entities as records, proof.
#include <pybind11/stl.h>

#include "python/core/arrays.h"
#include "python/core/bindings.h"
#include "python/core/library.h"
#include "zenromath/dwg_reader.h"

namespace zm::python {
namespace {

py::str Text(const std::string& gbk) {
    return FromLibrary(gbk.c_str());
}

template <class Value>
py::object OrNone(const std::optional<Value>& value) {
    return value ? py::cast(*value) : py::none();
}

py::dict RecordOf(const DrawingEntity& e) {
    py::dict record;
    record["kind"] = Text(e.kind);
    record["layer"] = Text(e.layer);
    record["color"] = OrNone(e.color);
    record["linetype"] = e.linetype ? py::object(Text(*e.linetype)) : py::none();
    record["elevation"] = OrNone(e.elevation);
    record["thickness"] = OrNone(e.thickness);
    record["erased"] = e.erased;
    record["paper_space"] = e.inPaperSpace;
    record["offset"] = e.offset;
    Doubles points({static_cast<py::ssize_t>(e.points.size()), py::ssize_t{3}});
    double* at = points.mutable_data();
    for (const DrawingPoint& p : e.points)
        for (const double v : {p.x, p.y, p.z}) *at++ = v;
    record["points"] = points;
    py::dict fields;
    for (const DrawingField& f : e.fields)
        fields[Text(f.name)] = f.text.empty() ? py::object(py::float_(f.number)) : py::object(Text(f.text));
    record["fields"] = fields;
    return record;
}

py::list Entities(const DrawingFile& file) {
    py::list records;
    file.ForEachEntity([&](const DrawingEntity& e) {
        records.append(RecordOf(e));
        return true;
    });
    return records;
}

py::list InBlock(const DrawingFile& file, std::size_t block) {
    if (block >= file.Blocks().size()) throw py::index_error("the drawing has no block " + std::to_string(block));
    py::list records;
    file.ForEachInBlock(block, [&](const DrawingEntity& e) {
        records.append(RecordOf(e));
        return true;
    });
    return records;
}

py::list Layers(const DrawingFile& file) {
    py::list layers;
    for (const DrawingLayer& l : file.Layers()) {
        py::dict layer;
        layer["name"] = Text(l.name);
        layer["color"] = l.color;
        layer["linetype"] = Text(l.linetype);
        layer["shown"] = l.shown;
        layers.append(layer);
    }
    return layers;
}

py::list Blocks(const DrawingFile& file) {
    py::list names;
    for (const std::string& name : file.Blocks()) names.append(Text(name));
    return names;
}

py::object Extents(const DrawingFile& file) {
    DrawingPoint low, high;
    if (!file.Extents(low, high)) return py::none();
    return py::make_tuple(low.x, low.y, high.x, high.y);
}

py::list Problems(const DrawingFile& file) {
    py::list problems;
    for (const DrawingFinding& f : file.Prove().problems) problems.append(py::make_tuple(f.offset, f.text));
    return problems;
}

DrawingFile FromBytes(const py::bytes& bytes) {
    const std::string_view view = bytes;
    DrawingFile file(std::vector<std::uint8_t>(view.begin(), view.end()));
    if (file.version() == 0)
        throw py::value_error("no drawing of a version that can be read: the file must begin with AC1006 or AC1009");
    return file;
}

}  // namespace

void AddDrawings(py::module_& m) {
    py::class_<DrawingFile>(m, "Drawing", "A drawing file (DWG) in memory; zenromath.read_drawing opens one.")
        .def(py::init(&FromBytes), py::arg("bytes"))
        .def_property_readonly("version", &DrawingFile::version, "The version digits: 1006 or 1009.")
        .def_property_readonly("layers", Layers, "The layers: name, color, linetype, shown.")
        .def_property_readonly("blocks", Blocks, "The names of the blocks, in the order of their numbers.")
        .def_property_readonly("bounds", Extents, "(x1, y1, x2, y2) of what is drawn, None where nothing is.")
        .def("entities", Entities,
             "The entities in the order of the file, each a dict: kind, layer, color, linetype, elevation, thickness, "
             "erased, paper_space, offset, points (an array of shape (n, 3)) and fields.\n\n"
             "None as color and linetype: that of the layer. Angles and coordinates are as the file has them.")
        .def("block", InBlock, py::arg("number"), "The entities of a block, as those of entities.")
        .def("problems", Problems, "What is damaged: (offset in bytes, text); an empty list for a sound drawing.");
}

}  // namespace zm::python
