// Features of any kind, place and text, read by OGR and drawn to SVG, DWG, DXF and a recording by rules of all kinds:
// drawn or refused; what is drawn is whole.
#include <cmath>
#include <cstdint>
#include <cstdio>
#include <cstring>
#include <string>
#include <vector>

#include "fuzz/tools/whole_runs.h"
#include "tools/zenro/map/draw_job.h"

namespace {

constexpr char kRules[] =
    "c = 0 -> symbol 1, label t, angle h\n"
    "c = 1 -> symbol 500, solid 141, label t, under t\n"
    "c = 2 -> symbol 380, line 2, height h, note I, label \"{h:.1f}\"\n"
    "c = 3 -> layer 200, road 6, label t, place spread\n"
    "c = 4 -> symbol 539, outline 213, also\n"
    "c = 5 -> symbol 385\n"
    "c = 6 -> symbol 510, value 33, pen 2\n"
    "c = 7 -> symbol 581, line 3\n"
    "c = 8 -> symbol 342, line 4, azimuth h\n"
    "c = 9 -> symbol 166, level 9, legend \"any\"\n"
    "* -> symbol 200, label t, place along\n";

// Takes bytes from the front; zeros where there are no more.
class Bytes {
 public:
    Bytes(const std::uint8_t* data, std::size_t size) : m_data(data), m_left(size) {}
    bool empty() const { return m_left == 0; }
    template <typename T>
    T Take() {
        T value{};
        const std::size_t size = std::min(sizeof value, m_left);
        std::memcpy(&value, m_data, size);
        m_data += size;
        m_left -= size;
        return value;
    }

 private:
    const std::uint8_t* m_data;
    std::size_t m_left;
};

std::string Number(double value) {
    char text[40];
    std::snprintf(text, sizeof text, "%.17g", std::isfinite(value) ? value : 0.0);
    return text;
}

// About the sheet in centimetres, or any double.
std::string Position(Bytes& bytes, bool wild) {
    const double x = wild ? bytes.Take<double>() : 40512000.0 + bytes.Take<std::int16_t>() * 0.01;
    const double y = wild ? bytes.Take<double>() : 3456000.0 + bytes.Take<std::int16_t>() * 0.01;
    return "[" + Number(x) + "," + Number(y) + "]";
}

std::string Positions(Bytes& bytes, bool wild, bool ring) {
    const int count = bytes.Take<std::uint8_t>() % 24 + (ring ? 3 : 2);
    std::string text, first;
    for (int i = 0; i < count; ++i) {
        const std::string position = Position(bytes, wild);
        if (i == 0) first = position;
        text += (i == 0 ? "" : ",") + position;
    }
    return "[" + text + (ring ? "," + first : "") + "]";
}

std::string Text(Bytes& bytes) {
    std::string text;
    for (int left = bytes.Take<std::uint8_t>() % 12; left > 0; --left) {
        char unit[8];
        std::snprintf(unit, sizeof unit, "\\u%04x", bytes.Take<std::uint16_t>());
        text += unit;
    }
    return text;
}

std::string FeatureOf(Bytes& bytes) {
    const int form = bytes.Take<std::uint8_t>();
    const bool wild = form >= 240;
    std::string geometry;
    if (form % 3 == 0) {
        geometry = "\"Point\",\"coordinates\":" + Position(bytes, wild);
    } else if (form % 3 == 1) {
        geometry = "\"LineString\",\"coordinates\":" + Positions(bytes, wild, false);
    } else {
        geometry = "\"Polygon\",\"coordinates\":[" + Positions(bytes, wild, true);
        for (int holes = form / 3 % 3; holes > 0; --holes) geometry += "," + Positions(bytes, wild, true);
        geometry += "]";
    }
    const int code = bytes.Take<std::uint8_t>() % 11;
    const double height = form % 2 == 0 ? bytes.Take<std::int16_t>() * 0.1 : bytes.Take<double>();
    return "{\"type\":\"Feature\",\"properties\":{\"c\":" + std::to_string(code) + ",\"h\":" + Number(height) +
           ",\"t\":\"" + Text(bytes) + "\"},\"geometry\":{\"type\":" + geometry + "}}";
}

}  // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
    using namespace zm::fuzz;
    static const std::vector<const char*> outputs = {"o.svg", "o.dwg", "o.dxf", "o.rec"};
    if (size == 0) return 0;
    Write("any.rules", kRules);
    Bytes bytes(data, size);
    const int options = bytes.Take<std::uint8_t>();
    std::string features;
    for (int left = 30; left > 0 && !bytes.empty(); --left)
        features += (features.empty() ? "" : ",") + FeatureOf(bytes);
    Write("in.geojson",
          "{\"type\":\"FeatureCollection\",\"crs\":{\"type\":\"name\",\"properties\":{\"name\":"
          "\"urn:ogc:def:crs:EPSG::4528\"}},\"features\":[" +
              features + "]}");
    zm::tool::DrawJob job;
    job.source.inputs = {(Folder() / "in.geojson").string()};
    job.rules = (Folder() / "any.rules").string();
    for (const char* name : outputs) job.outputs.push_back((Folder() / name).string());
    job.scale = 1000.0;
    if (options % 2 == 0) job.sheet = {40512000.0, 3456000.0, 40512100.0, 3456080.0};
    job.library.symbolsAs = options / 32 != 1 ? "strokes" : "blocks";
    job.legend = options / 4 % 2 == 0;
    job.frame = options / 8 % 2 == 0;
    job.rotation = options / 16 % 2 == 0 ? 0.0 : 30.0;
    job.jobs = 1;
    if (Run(outputs, [&](zm::tool::Context& context) { RunDrawJob(job, context); })) Prove(outputs);
    return 0;
}
