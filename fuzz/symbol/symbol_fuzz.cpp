// Any bytes as symbol library, and drawing with every code of it on every sink.
#include <cmath>
#include <cstdint>
#include <cstdio>
#include <cstring>
#include <memory>
#include <vector>

#include "draw/state.h"
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

// Steps that the pattern of the current line-class symbol takes along the points: a hundred million lawful ones would
// only be slow.
double StepsOfPattern(const std::vector<double>& x, const std::vector<double>& y) {
    double cycle = 0.0, length = 0.0;
    for (int i = 0; i < TheHeadNumber(); ++i)
        if (TheLCBody.code[i] == '+' || TheLCBody.code[i] == '-') cycle += TheLCBody.value[i];
    for (std::size_t i = 1; i < x.size(); ++i) length += std::hypot(x[i] - x[i - 1], y[i] - y[i - 1]);
    return cycle > 0.0 ? length * 1000.0 / (cycle * getcurgscale()) * TheHeadNumber() : 0.0;
}

void DrawAll(const Setting& s) {
    constexpr double kMostSteps = 2e5;
    double steps = 0.0;
    std::vector<double> px, py;
    MakePoints(s, px, py);
    for (int code = 1; code <= 999; ++code) {
        const SymbolHead& head = symbol::state().library->heads[static_cast<std::size_t>(code)];
        if (head.status == SymbolStatusL && head.number == 0) continue;
        insert(50.0, 50.0, s.angle * 0.1, code);
        if (head.status == SymbolStatusLC && getsymbody(code) != 0) {
            const double more = StepsOfPattern(px, py);
            if (steps + more > kMostSteps) continue;
            steps += more;
        }
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
