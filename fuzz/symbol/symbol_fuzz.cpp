// Any bytes as symbol library, and drawing with every code of it on every sink.
#include <algorithm>
#include <cmath>
#include <cstdint>
#include <cstdio>
#include <cstring>
#include <memory>
#include <vector>

#include "draw/state.h"
#include "symbol/area/hatch_lines.h"
#include "symbol/file/symbol_file.h"
#include "symbol/state.h"
#include "tests/support/writer_trace.h"
#include "zenromath/draw.h"
#include "zenromath/host.h"
#include "zenromath/null_device.h"
#include "zenromath/symbol.h"

namespace {

using namespace zm;

class SilentHost : public Host {
 public:
    int ShowBox(const char*, const char*, unsigned int) override { return IDNO; }
    void Beep() override {}
};

// The first bytes of the input choose where and how is drawn.
struct Setting {
    std::uint8_t sink, scale, pixels, lineType, points, angle, spread, clip;
};

void Read(const std::uint8_t* data, std::size_t size) {
    auto library = std::make_unique<symbol::Library>();
    std::vector<symbol::RemarkAt> remarks;
    std::unique_ptr<std::FILE, int (*)(std::FILE*)> file(
        size != 0 ? fmemopen(const_cast<std::uint8_t*>(data), size, "rb") : std::tmpfile(), std::fclose);
    symbol::SymbolFileReader(file.get(), *library, &remarks).Read();
    symbol::state().library = std::move(library);
}

// Points on a spiral: close and far ones, corners, and some that coincide.
void MakePoints(const Setting& s, std::vector<double>& x, std::vector<double>& y) {
    const std::size_t n = s.points % 40;
    const double reach = std::pow(10.0, s.spread % 5);
    for (std::size_t i = 0; i < n; ++i) {
        const double a = static_cast<double>(i) * (1.0 + s.angle % 16);
        const double r = i % 7 == 6 ? 0.0 : reach * static_cast<double>(i + 1) / 40.0;
        x.push_back(50.0 + r * std::cos(a));
        y.push_back(50.0 + r * std::sin(a));
    }
}

// What the current symbol asks for, in strokes drawn, along these points: a hundred million lawful ones would only be
// slow.
double WorkOf(const std::vector<double>& x, const std::vector<double>& y) {
    const symbol::Library& library = *symbol::state().library;
    // Arcs have a stroke for each 1.8 degrees of their sweep, up to 4000.
    const auto records = [&](double code) {
        if (!(code >= 1.0 && code < symbol::kHeads)) return 1.0;
        const auto number = static_cast<std::size_t>(code);
        double strokes = 1.0;
        for (int i = 0; i < library.bodySizes[number]; ++i) {
            const SYMBODY& record =
                library.body[static_cast<std::size_t>(library.heads[number].position) + static_cast<std::size_t>(i)];
            strokes += record.point.x == symbol::kArcMarker
                           ? std::min(2.0 + std::fabs(double{record.point.y}) / 1.8, 4000.0)
                           : 1.0;
        }
        return strokes;
    };
    const double scale = getcurgscale();
    double length = 0.0, left = 50.0, right = 50.0;
    for (std::size_t i = 0; i < x.size(); ++i) {
        if (i > 0) length += std::hypot(x[i] - x[i - 1], y[i] - y[i - 1]);
        left = std::min({left, x[i], y[i]});
        right = std::max({right, x[i], y[i]});
    }
    if (TheHeadStatus() == SymbolStatusLC) {
        double cycle = 0.0, marks = 0.0;  // millimetres; records of one cycle
        for (int i = 0; i < TheHeadNumber(); ++i) {
            if (TheLCBody.code[i] == '+' || TheLCBody.code[i] == '-') cycle += TheLCBody.value[i];
            marks += TheLCBody.code[i] == 'G' ? records(TheLCBody.value[i]) : 1.0;
        }
        return cycle > 0.0 ? length * 1000.0 / (cycle * scale) * marks : 0.0;
    }
    double work = 0.0;
    if (TheHeadStatus() != SymbolStatusH || TheBody == nullptr) return work;
    // An entry is its type, one or two records of an angle and a step in metres of paper, and the symbol of a grid.
    for (int at = 1; at + 3 < nBody; ++at) {
        if (TheBody[at].op.op != 1.0F) continue;
        const auto lines = [&](int family) {
            const double step = std::fabs(static_cast<double>(TheBody[at + family].point.y)) * scale;
            return std::min(step > 0.0 ? 1.5 * (right - left) / step : 1e9, double{symbol::kMostSegments});
        };
        work += lines(1) * lines(2) * records(static_cast<double>(TheBody[at + 3].point.x));
    }
    return work;
}

void DrawAll(const Setting& s) {
    constexpr double kMostWork = 2e5;
    double work = 0.0;
    std::vector<double> px, py;
    MakePoints(s, px, py);
    for (int code = 1; code <= 999; ++code) {
        const SymbolHead& head = symbol::state().library->heads[static_cast<std::size_t>(code)];
        if (head.status == SymbolStatusL && head.number == 0) continue;
        insert(50.0, 50.0, s.angle * 0.1, code);
        const double more = getsymbody(code) != 0 ? WorkOf(px, py) : 0.0;
        if (work + more > kMostWork) continue;
        work += more;
        std::vector<double> x = px, y = py;
        x.resize(4000);
        y.resize(4000);
        PROCESSALL(static_cast<int>(px.size()), x.data(), y.data(), s.lineType % 7, code);
        if (TqDC->GetTqDCString()->GetSize() > 100000) TqDC->GetTqDCString()->RemoveAll();
        Get_Symbol_Note(code);
    }
}

}  // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
    static SilentHost host;
    static NullDevice device;
    static test::Trace writer;
    SetHost(&host);
    Setting setting = {};
    if (size >= sizeof setting) {
        std::memcpy(&setting, data, sizeof setting);
        data += sizeof setting;
        size -= sizeof setting;
    }
    symbol::ResetState();
    draw::ResetState();
    test::SetTrace(&writer);
    CTqDraw dc(setting.sink % 4);
    dc.SetViewDrawDC(&device, std::pow(10.0, setting.pixels % 5 - 2.0), 0.0, 0.0, 1000, 1000, 0);
    dc.SetCutArea(0.0, 0.0, 100.0, 100.0);
    dc.SetDoCut(setting.clip % 2);
    setgscale(std::pow(10.0, setting.scale % 6));
    Read(data, size);
    DrawAll(setting);
    return 0;
}
