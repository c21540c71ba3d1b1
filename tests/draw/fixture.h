// What tests of drawing share: fresh state, a host that records, a device that logs, a writer that traces, layers and
// fonts.
#pragma once

#include <gtest/gtest.h>

#include <cstring>
#include <memory>
#include <string>
#include <vector>

#include "draw/device.h"
#include "runtime/text/numbers.h"
#include "tests/support/scratch.h"
#include "tests/support/test_host.h"
#include "tests/support/writer_trace.h"
#include "zenromath/config.h"
#include "zenromath/draw.h"
#include "zenromath/log.h"

namespace zm::test {

/// Keeps the calls of the DWG writer as texts: name and numbers with six decimals.
class WriterLog : public test::Trace {
 public:
    WriterLog() : m_previous(test::SetTrace(this)) {}
    ~WriterLog() override { test::SetTrace(m_previous); }
    WriterLog(const WriterLog&) = delete;
    WriterLog& operator=(const WriterLog&) = delete;

    void Line(double x1, double y1, double x2, double y2) override { Add("line", {x1, y1, x2, y2}); }
    void Polyline(const double* xy, int n) override { Add("polyline", {xy, xy + 2 * n}); }
    void Point(double x, double y) override { Add("point", {x, y}); }
    void Arc(double x, double y, double r, double start, double end) override { Add("arc", {x, y, r, start, end}); }
    void Text(int justification, double x, double y, double height, double angle, const char* text) override {
        Add("text", {static_cast<double>(justification), x, y, height, angle});
        calls.back() += std::string(" ") + text;
    }
    void SetLay(const char* name) override { calls.push_back(std::string("lay ") + (name != nullptr ? name : "null")); }
    void SetColor(int color) override { calls.push_back("color " + std::to_string(color)); }
    void SetLtype(const char* name) override { calls.push_back(std::string("ltype ") + name); }
    void SetStyle(int type, const char* name, const char* font, double width, double oblique) override {
        Add("style", {static_cast<double>(type), width, oblique});
        calls.back() += std::string(" ") + name + " " + font;
    }

    std::vector<std::string> calls;

 private:
    void Add(const char* name, const std::vector<double>& values) {
        std::string call = name;
        for (const double value : values) call += numbers::Text(" %.6f", value);
        calls.push_back(std::move(call));
    }
    test::Trace* m_previous;
};

/// Fresh state of all that drawing touches, before and after each test.
class DrawTest : public testing::Test {
 protected:
    DrawTest();
    ~DrawTest() override;

    /// A context of a type with a view of 800 by 600 pixels, 10 pixels a unit, origin 0, 0, on the logging device.
    CTqDraw& MakeContext(int type);
    /// Layers of the codes 100-199 (colour 4, "ROADS") and 200-299 (colour 9, "WATER"); pen widths of 120: 50, of 200:
    /// 35 hundredths.
    void LoadLayers();
    /// Fonts 1 (SimSun, STANDARD, hztxt, upright), 2 (FangSong, NOTES, txt, slant 1), 4 (Courier New, LEAN, romans,
    /// slant 2); DECMIN 5, DGT1MIN 3.
    void LoadFonts();

    /// What a context of type 3 recorded, then empties it.
    std::vector<std::string> Recorded(CTqDraw& dc);

    TestHost host;
    ScratchDir scratch;
    LogDevice device;
    WriterLog writer;
    std::unique_ptr<CTqDraw> context;
    std::unique_ptr<TqNoteLayBase> notes;

 private:
    void StartProject();
    std::unique_ptr<ScopedCurrentDir> m_home;
};

using Lines = std::vector<std::string>;

/// A text that calls may write to.
class Writable {
 public:
    explicit Writable(const std::string& text) : m_bytes(text.begin(), text.end()) { m_bytes.push_back('\0'); }
    operator char*() { return m_bytes.data(); }
    std::string str() const { return m_bytes.data(); }

 private:
    std::vector<char> m_bytes;
};

}  // namespace zm::test
