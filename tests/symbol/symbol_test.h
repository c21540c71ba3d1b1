// What the tests of symbols share: a library from a text, and a recording to draw on.
#pragma once

#include <gtest/gtest.h>

#include <memory>
#include <string>
#include <vector>

#include "runtime/text/gbk.h"
#include "symbol/state.h"
#include "tests/support/scratch.h"
#include "tests/support/test_host.h"
#include "tests/support/writer_trace.h"
#include "zenromath/draw.h"
#include "zenromath/null_device.h"
#include "zenromath/runtime.h"
#include "zenromath/symbol.h"

namespace zm::test {

/// Loads libraries and sees the messages.
class LibraryTest : public testing::Test {
 protected:
    LibraryTest() { symbol::ResetState(); }
    ~LibraryTest() override { symbol::ResetState(); }

    /// The GBK path text of a file in the scratch directory, with backslashes.
    std::string PathText(const std::string& name) const {
        const std::u8string utf8 = (m_scratch / name).u8string();
        std::string text = gbk::FromUtf8({reinterpret_cast<const char*>(utf8.data()), utf8.size()});
        for (char& c : text)
            if (c == '/') c = '\\';
        return text;
    }

    /// Reads a library of this text.
    void Load(const std::string& text) {
        WriteFile(m_scratch / "symbol.dat", text);
        EXPECT_EQ(1, TsymbolInit(PathText("symbol.dat").c_str()));
    }

    /// status, position and number of a code.
    static std::vector<int> HeadOf(int code) {
        EXPECT_EQ(1, getsymbody(code));
        return {TheHeadStatus(), TheHeadPosition(), TheHeadNumber()};
    }

    std::vector<std::string> Messages() const {
        std::vector<std::string> texts;
        for (const ShownBox& box : m_host.boxes) texts.push_back(box.text);
        return texts;
    }

    ScratchDir m_scratch;
    TestHost m_host;
};

/// A device that draws nothing and says that it did; it counts, for tests of the device path.
class CountingDevice : public NullDevice {
 public:
    int Line(const Stroke&, int, int, int, int) override { return ++lines; }
    COLORREF Dot(int, int, COLORREF color) override {
        ++dots;
        return color;
    }
    int Arc(const Stroke&, const RECT&, POINT, POINT) override { return ++arcs; }
    int FillRegion(const Region&, const Fill& fill) override {
        fills.push_back(fill);
        return 1;
    }

    int lines = 0;
    int dots = 0;
    int arcs = 0;
    std::vector<Fill> fills;
};

/// What reaches the DWG writer, as texts: the call's name and its numbers.
class WriterTrace : public test::Trace {
 public:
    WriterTrace() : m_previous(test::SetTrace(this)) {}
    ~WriterTrace() override { test::SetTrace(m_previous); }
    WriterTrace(const WriterTrace&) = delete;
    WriterTrace& operator=(const WriterTrace&) = delete;

    void Line(double x1, double y1, double x2, double y2) override;
    void Polyline(const double* xy, int n) override;
    void Point(double x, double y) override;
    void Arc(double x, double y, double radius, double start, double end) override;
    void SetColor(int color) override;
    void SetLtype(const char* name) override;
    void SetElev(double elevation, double thickness) override;
    void Insert(double x, double y, double xScale, double yScale, double angle, const char* name) override;

    std::vector<std::string> calls;

 private:
    test::Trace* m_previous;
};

/// A library and a working context at 1:1000, 100 pixels for a survey unit, without clipping.
class DrawingTest : public LibraryTest {
 protected:
    DrawingTest();
    ~DrawingTest() override;

    /// A new working context of a device type: 0 a device, 1 the DWG writer, 3 a recording.
    CTqDraw& Begin(int type = 3, double pixelsPerUnit = 100.0);
    /// What was recorded since the last call.
    std::vector<std::string> Recorded();
    /// Of those, the lines and how many there are of one command.
    std::size_t Count(const std::string& command);

    CountingDevice m_device;
    WriterTrace m_writer;
    std::unique_ptr<CTqDraw> m_dc;
};

}  // namespace zm::test
