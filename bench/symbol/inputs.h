// Libraries, contexts and figures for the benchmarks of symbols. Fixed seeds, so that every run measures the same.
#pragma once

#include <cmath>
#include <cstdio>
#include <filesystem>
#include <memory>
#include <numbers>
#include <random>
#include <string>
#include <vector>

#include "draw/state.h"
#include "symbol/file/library.h"
#include "symbol/file/symbol_file.h"
#include "symbol/state.h"
#include "tests/support/writer_trace.h"
#include "zenromath/draw.h"
#include "zenromath/null_device.h"
#include "zenromath/symbol.h"

namespace zm::bench {

/// A device that draws nothing: what is measured is the way to it.
class SumDevice : public NullDevice {
 public:
    int Line(const Stroke&, int x1, int y1, int x2, int y2) override {
        sum += x1 ^ y1 ^ x2 ^ y2;
        return 1;
    }
    COLORREF Dot(int x, int y, COLORREF color) override {
        sum += x ^ y;
        return color;
    }
    int Arc(const Stroke&, const RECT& box, POINT, POINT) override {
        sum += box.left;
        return 1;
    }
    int sum = 0;
};

/// Takes the writer's calls and keeps nothing.
class NullWriter : public test::Trace {
 public:
    void Line(double x1, double, double, double) override { sum += x1; }
    void Polyline(const double* xy, int n) override { sum += xy[2 * n - 1]; }
    void Point(double x, double) override { sum += x; }
    double sum = 0.0;
};

enum Sink { kDevice = 0, kDwg = 1, kRecording = 3 };

// Where a projection has a map sheet: what lies there is known to 6e-11 and 5e-10 metres.
constexpr double kEasting = 512000.0;
constexpr double kNorthing = 3391000.0;

/// A library of this text and a working context on a sink, clipped to its view as applications have it. (x0, y0) is the view's lower left corner.
class Stage {
 public:
    Stage(const std::string& library, int type, Device* device = nullptr, double x0 = 0.0, double y0 = 0.0)
        : m_type(type) {
        symbol::ResetState();
        draw::ResetState();
        auto loaded = std::make_unique<symbol::Library>();
        std::FILE* file = std::tmpfile();
        std::fwrite(library.data(), 1, library.size(), file);
        std::rewind(file);
        symbol::SymbolFileReader(file, *loaded).Read();
        std::fclose(file);
        symbol::state().library = std::move(loaded);
        m_dc = std::make_unique<CTqDraw>(type);
        m_dc->SetViewDrawDC(device != nullptr ? device : &m_null, 10.0, x0, y0, 20000, 20000, 0);
        m_dc->SetCutArea();
        m_dc->SetDoCut(1);
        test::SetTrace(&m_writer);
    }
    ~Stage() {
        m_dc.reset();
        test::SetTrace(nullptr);
        draw::ResetState();
        symbol::ResetState();
    }
    Stage(const Stage&) = delete;
    Stage& operator=(const Stage&) = delete;

    CTqDraw& dc() { return *m_dc; }
    SumDevice& device() { return m_null; }
    /// A recording grows without end otherwise.
    void Empty() {
        if (m_type == kRecording && m_dc->GetTqDCString()->GetSize() > 100000) m_dc->GetTqDCString()->RemoveAll();
    }

 private:
    int m_type;
    SumDevice m_null;
    NullWriter m_writer;
    std::unique_ptr<CTqDraw> m_dc;
};

/// Ten strokes, as a map symbol has them: a frame, a cross in it and two ticks.
constexpr char kTenStrokes[] =
    "*12 G\n1 -1,-1 1,-1\n1 1,-1 1,1\n1 1,1 -1,1\n1 -1,1 -1,-1\n1 -1,-1 1,1\n1 -1,1 1,-1\n1 0,1 0,2\n1 -0.5,2 0.5,2\n"
    "1 -0.5,-1 -0.5,-1.5\n1 0.5,-1 0.5,-1.5\n*$\n";

/// A line of n vertices about the corner of a projected sheet of 2 km, from side to side and on and on.
inline std::vector<double> Wiggle(int n, double step) {
    std::mt19937 random(7);
    std::uniform_real_distribution<double> turn(-0.3, 0.3);
    std::vector<double> xy;
    double x = 10.0;
    double y = 500.0;
    double side = 1.0;
    for (int i = 0; i < n; ++i) {
        xy.push_back(kEasting + x);
        xy.push_back(kNorthing + y);
        const double a = turn(random);
        x += side * step * std::cos(a);
        y += step * std::sin(a);
        if (x < 10.0 || x > 1990.0) side = x < 10.0 ? 1.0 : -1.0;
    }
    return xy;
}

/// A star of n vertices about (cx, cy).
inline std::vector<double> Star(std::mt19937& random, int n, double cx, double cy, double r) {
    std::uniform_real_distribution<double> part(0.7, 1.0);
    std::vector<double> xy;
    for (int i = 0; i < n; ++i) {
        const double a = 2.0 * std::numbers::pi * i / n;
        const double at = r * part(random);
        xy.push_back(cx + at * std::cos(a));
        xy.push_back(cy + at * std::sin(a));
    }
    return xy;
}

}  // namespace zm::bench
