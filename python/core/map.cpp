// Maps: features by arrays, drawn to a file.
#include <pybind11/stl.h>

#include <algorithm>
#include <chrono>
#include <cmath>
#include <string>
#include <vector>

#include "python/core/arrays.h"
#include "python/core/bindings.h"
#include "python/core/library.h"
#include "python/core/map_sheet.h"
#include "tools/kit/tool_host.h"

namespace zm::python {
namespace {

using tool::GeometryKind;

/// Features, and whether they are being drawn: they must not change meanwhile.
class Canvas {
 public:
    MapData data;
    int drawings = 0;  // changed with Python's lock held

    void RequireStill() const {
        if (drawings > 0) throw std::runtime_error("the map is being drawn by another thread: add to it afterwards");
    }
};

void RequireFinite(const Doubles& x, const Doubles& y) {
    for (py::ssize_t i = 0; i < x.size(); ++i)
        if (!std::isfinite(x.data()[i]) || !std::isfinite(y.data()[i]))
            throw py::value_error("point " + std::to_string(i) + " has a coordinate that is no finite number");
}

void RequirePoints(const Doubles& x, const Doubles& y, py::ssize_t least) {
    RequireRow("x", x, least);
    RequireSameShape("x", x, "y", y);
    CountOf(x);
    RequireFinite(x, y);
}

tool::Chain ChainOf(const Doubles& x, const Doubles& y, long long from, long long to) {
    return {{x.data() + from, x.data() + to}, {y.data() + from, y.data() + to}};
}

void AddPoints(Canvas& canvas, Look look, const Doubles& x, const Doubles& y, const Doubles& angles,
               const std::vector<std::string>& labels) {
    canvas.RequireStill();
    RequirePoints(x, y, 0);
    const auto n = static_cast<std::size_t>(x.size());
    if (angles.size() != 1 && angles.size() != x.size())
        throw py::value_error("angle must be one number or one for each of " + std::to_string(n) + " points");
    if (labels.size() > 1 && labels.size() != n)
        throw py::value_error("text must be one text or one for each of " + std::to_string(n) + " points, not " +
                              std::to_string(labels.size()));
    for (py::ssize_t i = 0; i < angles.size(); ++i)
        if (!std::isfinite(angles.data()[i])) throw py::value_error("an angle is no finite number");
    std::vector<std::string> texts;
    for (const std::string& label : labels) texts.push_back(ToLibrary(label));
    for (std::size_t i = 0; i < n; ++i) {
        const auto at = static_cast<long long>(i);
        look.angle = angles.data()[angles.size() == 1 ? 0 : at];
        canvas.data.Add(look, {GeometryKind::point, {ChainOf(x, y, at, at + 1)}},
                        texts.empty() ? std::string() : texts[texts.size() == 1 ? 0 : i]);
    }
}

void AddLine(Canvas& canvas, const Look& look, const Doubles& x, const Doubles& y, const std::string& label) {
    canvas.RequireStill();
    RequirePoints(x, y, 2);
    canvas.data.Add(look, {GeometryKind::line, {ChainOf(x, y, 0, x.size())}}, ToLibrary(label));
}

// Rings one after the other, the outer one first; each is closed here where it is open.
void AddArea(Canvas& canvas, const Look& look, const Doubles& x, const Doubles& y, const std::vector<long long>& starts,
             const std::string& label) {
    canvas.RequireStill();
    RequirePoints(x, y, 3);
    tool::Shape shape{GeometryKind::area, {}};
    for (std::size_t i = 0; i + 1 < starts.size(); ++i) {
        const long long from = starts[i], to = starts[i + 1];
        if (from < 0 || to > x.size() || to - from < 3)
            throw py::value_error("ring " + std::to_string(i) + " of an area needs at least 3 points");
        tool::Chain ring = ChainOf(x, y, from, to);
        if (ring.x.front() != ring.x.back() || ring.y.front() != ring.y.back()) {
            ring.x.push_back(ring.x.front());
            ring.y.push_back(ring.y.front());
        }
        shape.chains.push_back(std::move(ring));
    }
    if (shape.chains.empty()) throw py::value_error("an area needs a ring");
    canvas.data.Add(look, std::move(shape), ToLibrary(label));
}

Look LookOf(int symbol, int layer, int outline, int lineType, int penStyle, int penValue, const std::string& note,
            int place, int level, py::object height) {
    if (note.size() != 1) throw py::value_error("note must be the one character of a note class, not \"" + note + "\"");
    Look look;
    look.rule.symbol = symbol;
    look.rule.layer = layer;
    look.rule.outline = outline;
    look.rule.lineType = lineType;
    look.rule.penStyle = penStyle;
    look.rule.penValue = penValue;
    look.rule.note = note.front();
    look.rule.place = static_cast<tool::LabelPlace>(place);
    look.rule.level = level;
    if (!height.is_none()) {
        look.hasHeight = true;
        look.height = height.cast<double>();
        if (!std::isfinite(look.height)) throw py::value_error("height is no finite number");
    }
    return look;
}

// Lets Python look at Ctrl-C ten times a second.
class Breath {
 public:
    void operator()() {
        const auto now = std::chrono::steady_clock::now();
        if (now - m_last < std::chrono::milliseconds(100)) return;
        m_last = now;
        const py::gil_scoped_acquire python;
        if (PyErr_CheckSignals() != 0) throw py::error_already_set();
    }

 private:
    std::chrono::steady_clock::time_point m_last = std::chrono::steady_clock::now();
};

// What the drawing reports, each line once.
std::vector<std::string> LinesOf(const std::vector<tool::ReportedEvent>& events) {
    std::vector<std::string> lines;
    for (const tool::ReportedEvent& e : events)
        if (!e.line.empty() && std::find(lines.begin(), lines.end(), e.line) == lines.end()) lines.push_back(e.line);
    return lines;
}

[[noreturn]] void Raise(PyObject* kind, const std::string& text) {
    PyErr_SetString(kind, text.c_str());
    throw py::error_already_set();
}

// Draws, and returns what is to be warned of: the package does that, so that a warning names its caller.
std::vector<std::string> Draw(Canvas& canvas, const SheetOptions& options, const std::string& path) {
    Guard library;
    std::vector<tool::ReportedEvent> events;
    tool::Report report;
    report.Collect(&events);
    std::string stopped;
    long withoutRoom = 0;
    struct Busy {
        explicit Busy(int& drawings) : count(drawings) { ++count; }
        ~Busy() { --count; }
        int& count;
    } const busy(canvas.drawings);
    try {
        const py::gil_scoped_release others;
        withoutRoom = DrawSheet(canvas.data, options, path, report, Breath(), stopped);
    } catch (const tool::Failure& failure) {
        Raise(failure.status == tool::kUsage                                          ? PyExc_ValueError
              : failure.status == tool::kNoInput || failure.status == tool::kNoOutput ? PyExc_OSError
                                                                                      : LibraryErrorType(),
              failure.what());
    } catch (const tool::LibraryStop& stop) {
        Raise(LibraryErrorType(),
              stopped + "; the library asked to end the process with status " + std::to_string(stop.status));
    }
    library.Close();
    std::vector<std::string> lines = LinesOf(events);
    if (withoutRoom > 0) lines.push_back(std::to_string(withoutRoom) + " texts found no room and were left out");
    return lines;
}

SheetOptions OptionsOf(double scale, std::vector<double> bounds, bool frame, const std::string& title,
                       const std::string& number, const std::string& system, const std::string& remark,
                       const std::string& symbols, const std::string& project, const std::string& notes, double dpi,
                       bool monochrome, bool utf8) {
    if (!std::isfinite(scale) || scale < 0.0) throw py::value_error("scale must be the denominator, such as 1000");
    if (!bounds.empty() && bounds.size() != 4) throw py::value_error("bounds must be four numbers: x1, y1, x2, y2");
    for (const double b : bounds)
        if (!std::isfinite(b)) throw py::value_error("bounds must be finite numbers");
    SheetOptions options;
    options.scale = scale;
    options.bounds = std::move(bounds);
    options.frame = frame;
    options.texts.title = title;
    options.texts.number = number;
    options.texts.system = system;
    options.texts.remark = remark;
    options.library.symbols = symbols;
    options.library.project = project;
    options.library.notes = notes;
    options.sink.overwrite = true;
    options.sink.dpi = dpi;
    options.sink.monochrome = monochrome;
    options.sink.utf8 = utf8;
    options.sink.title = title;
    return options;
}

py::tuple Sheet(const Canvas& canvas, const SheetOptions& options) {
    try {
        const tool::Page page = PageOf(canvas.data, options);
        return py::make_tuple(page.scale, page.sheet.x1, page.sheet.y1, page.sheet.x2, page.sheet.y2);
    } catch (const tool::Failure& failure) {
        throw py::value_error(failure.what());
    }
}

}  // namespace

void AddMap(py::module_& m) {
    py::class_<Look>(m, "Look").def(py::init(&LookOf));
    py::class_<SheetOptions>(m, "SheetOptions").def(py::init(&OptionsOf));
    py::class_<Canvas>(m, "Canvas")
        .def(py::init<>())
        .def("points", AddPoints)
        .def("line", AddLine)
        .def("area", AddArea)
        .def("sheet", Sheet)
        .def("draw", Draw)
        .def("__len__", [](const Canvas& canvas) { return canvas.data.size(); });
}

}  // namespace zm::python
