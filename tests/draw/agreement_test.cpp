// The same strokes through all sinks: what a recording holds is what the drawing file holds and what a device shows.
#include <gtest/gtest.h>

#include <algorithm>
#include <cmath>
#include <cstdlib>
#include <sstream>

#include "dwg/reader/drawing.h"
#include "dwg/reader/layout.h"
#include "tests/draw/fixture.h"
#include "tests/draw/sheet.h"
#include "tests/support/random.h"
#include "tests/support/writer_trace.h"
#include "tools/make_template/template_drawing.h"
#include "zenromath/dwg.h"

namespace {

namespace reader = zm::dwg::reader;
using zm::test::Lines;
using zm::test::Random;
using zm::test::Writable;

constexpr double kSixDecimals = 5.1e-7;             // half a unit of the sixth decimal
constexpr double kWriterDegrees = 180 / 3.1415926;  // the short constant with which the writer stores arcs

// One stroke of a random figure, drawn again with each sink.
struct Stroke {
    enum class Kind { line, arc, pixel, text, rectangle } kind;
    double v[5];
    std::string text;
};

std::vector<Stroke> RandomStrokes(Random& random, int count) {
    std::vector<Stroke> strokes;
    for (int i = 0; i < count; ++i) {
        Stroke s{static_cast<Stroke::Kind>(random.Int(0, 4)), {}, {}};
        for (double& v : s.v) v = random.Real(-10.0, 70.0);
        if (s.kind == Stroke::Kind::arc) {
            s.v[2] = random.Real(0.5, 30.0);
            s.v[3] = random.Real(-4.0, 4.0);
            s.v[4] = random.Int(0, 3) == 0 ? s.v[3] : s.v[3] + random.Real(0.1, 6.0);
        }
        for (int k = random.Int(1, 6); k > 0; --k) s.text += static_cast<char>('A' + random.Int(0, 25));
        strokes.push_back(s);
    }
    return strokes;
}

void Draw(CTqDraw& dc, const std::vector<Stroke>& strokes) {
    for (const Stroke& s : strokes) {
        Writable text(s.text);
        switch (s.kind) {
            case Stroke::Kind::line:
                dc.line(s.v[0], s.v[1], s.v[2], s.v[3]);
                break;
            case Stroke::Kind::arc:
                dc.drawarc(s.v[0], s.v[1], s.v[2], s.v[3], s.v[4]);
                break;
            case Stroke::Kind::pixel:
                dc.pixel(s.v[0], s.v[1], 0x0000FFu, 1);
                break;
            case Stroke::Kind::text:
                dc.textout(s.v[0], s.v[1], text, 0, 1);
                break;
            case Stroke::Kind::rectangle:
                dc.drawrect(s.v[0], s.v[1], s.v[2], s.v[3]);
                break;
        }
    }
}

struct Command {
    std::string name;
    std::vector<double> values;
    std::string text;
};

Command Parsed(const std::string& line) {
    Command command;
    std::istringstream in(line);
    std::string field;
    std::getline(in, command.name, ':');
    const std::size_t limit = command.name == "Text" ? 4 : 99;
    while (command.values.size() < limit && std::getline(in, field, ':'))
        command.values.push_back(zm::numbers::ReadReal(field.c_str()));
    std::getline(in, command.text);
    return command;
}

double TurnsApart(double a, double b) {
    const double apart = std::fmod(std::fabs(a - b), 360.0);
    return std::min(apart, 360.0 - apart);
}

class Agreement : public zm::test::DrawTest {
 protected:
    // Area and rotation of a round; the same for each sink.
    void SetUpContext(CTqDraw& dc, int round) {
        dc.SetRotateMoveP(round % 2 == 0 ? 0.0 : 33.0, round % 2 == 0 ? 0.0 : 30.0, round % 2 == 0 ? 0.0 : 20.0);
        if (round % 3 == 1) dc.SetCutArea(5.0, 3.0, 60.0, 45.0);
        if (round % 3 == 2) {
            double x[] = {5, 60, 50, 30, 8};
            double y[] = {3, 5, 50, 30, 48};
            dc.SetCutArea(5, x, y);
        }
        dc.SetDoCut(round % 3 == 0 ? 0 : 1);
        dc.SetViewDrawDC(&device, 10.0, 0.0, 0.0, 800, 600, round % 4 == 3 ? 1 : 0);
    }

    std::vector<Command> Record(int round, const std::vector<Stroke>& strokes) {
        CTqDraw& dc = MakeContext(3);
        SetUpContext(dc, round);
        CTQFont font(2.0, 1.5, 1, 30.0, 0);
        dc.GetTqDCString()->RemoveAll();
        Draw(dc, strokes);
        std::vector<Command> commands;
        for (const std::string& line : Recorded(dc)) commands.push_back(Parsed(line));
        return commands;
    }

    std::vector<reader::Record> WriteAndRead(int round, const std::vector<Stroke>& strokes) {
        zm::test::SetTrace(nullptr);  // the real writer
        Writable path((scratch / "out.dwg").filename().string());
        _LDBopendwg(path);
        CTqDraw& dc = MakeContext(1);
        SetUpContext(dc, round);
        {
            CTQFont font(2.0, 1.5, 1, 30.0, 0);
            Draw(dc, strokes);
        }
        _LDBclosedwg();
        zm::test::SetTrace(&writer);
        const std::string bytes = zm::test::ReadFile(scratch / "out.dwg");
        const reader::Drawing drawing({bytes.begin(), bytes.end()});
        std::vector<reader::Record> records;
        drawing.ForEachEntity([&](const reader::Record& record) {
            records.push_back(record);
            return true;
        });
        return records;
    }
};

void ExpectNear(const std::vector<double>& found, const std::vector<double>& expected, const std::string& name) {
    ASSERT_EQ(found.size(), expected.size()) << name;
    for (std::size_t i = 0; i < found.size(); ++i) EXPECT_NEAR(found[i], expected[i], kSixDecimals) << name << " " << i;
}

TEST_F(Agreement, OfRecordingAndDrawingFileToSixDecimals) {
    ZM_TRACE_SEED();
    LoadFonts();
    zm::test::WriteFile(scratch / "acad.dwg", zm::tool::TemplateDrawing());
    Random random;
    for (int round = 0; round < 12; ++round) {
        SCOPED_TRACE(round);
        const auto strokes = RandomStrokes(random, 60);
        const auto commands = Record(round, strokes);
        const auto records = WriteAndRead(round, strokes);
        ASSERT_EQ(commands.size(), records.size());
        for (std::size_t i = 0; i < commands.size(); ++i) {
            const Command& c = commands[i];
            const reader::Record& r = records[i];
            ASSERT_FALSE(r.points.empty());
            const double x = r.points[0].x;
            const double y = r.points[0].y;
            if (c.name == "Line2") {
                ASSERT_EQ(r.kind, reader::kLine);
                ExpectNear({x, y, r.points[1].x, r.points[1].y}, c.values, c.name);
            } else if (c.name == "Pixel") {
                ASSERT_EQ(r.kind, reader::kPoint);
                ExpectNear({x, y}, {c.values[0], c.values[1]}, c.name);
            } else if (c.name == "Arc") {
                ASSERT_TRUE(r.kind == reader::kArc || r.kind == reader::kCircle);
                ExpectNear({x, y, r.Number("radius", -1.0)}, {c.values[0], c.values[1], c.values[2]}, c.name);
                if (r.kind == reader::kArc) {
                    EXPECT_LT(TurnsApart(r.Number("start", 0.0) * kWriterDegrees, c.values[3]), 1e-6);
                    EXPECT_LT(TurnsApart(r.Number("end", 0.0) * kWriterDegrees, c.values[4]), 1e-6);
                }
            } else {
                ASSERT_EQ(c.name, "Text");
                ASSERT_EQ(r.kind, reader::kText);
                // The drawing file has the base line, two metres below the top along (sine, -cosine) of 30 degrees.
                ExpectNear({x, y}, {c.values[1] + 1.0, c.values[2] - 1.7320508075688772}, c.name);
                EXPECT_EQ(r.Find("text")->text, c.text);
            }
        }
    }
}

// Numbers of two logged calls, each within one pixel: the recording has six decimals, and pixels are cut off.
void ExpectSamePixels(const std::string& a, const std::string& b) {
    std::istringstream inA(a);
    std::istringstream inB(b);
    std::string fieldA, fieldB;
    while (inA >> fieldA) {
        ASSERT_TRUE(inB >> fieldB) << a << " / " << b;
        char* end = nullptr;
        const long valueA = std::strtol(fieldA.c_str(), &end, 10);
        if (end != fieldA.c_str())
            EXPECT_LE(std::labs(valueA - std::strtol(fieldB.c_str(), nullptr, 10)), 1) << a << " / " << b;
        else
            EXPECT_EQ(fieldA, fieldB);
    }
}

TEST_F(Agreement, OfARecordingDrawnAgainAndADevice) {
    ZM_TRACE_SEED();
    LoadFonts();
    Random random(1);
    for (int round = 0; round < 12; ++round) {
        SCOPED_TRACE(round);
        auto strokes = RandomStrokes(random, 60);
        const auto commands = Record(round, strokes);
        CTqDraw& dc = MakeContext(0);
        SetUpContext(dc, round);
        std::unique_ptr<CTQFont> font = std::make_unique<CTQFont>(2.0, 1.5, 1, 30.0, 0);
        device.Clear();
        Draw(dc, strokes);
        const Lines direct = device.lines();
        device.Clear();
        // Again from the recording, which is rotated and clipped already.
        dc.SetRotateMoveP(0.0, 0.0, 0.0);
        dc.SetDoCut(0);
        for (const Command& c : commands) {
            const auto& v = c.values;
            Writable text(c.text);
            if (c.name == "Line2")
                dc.line(v[0], v[1], v[2], v[3]);
            else if (c.name == "Pixel")
                dc.pixel(v[0], v[1], static_cast<DWORD>(v[2]), 1);
            else if (c.name == "Arc")
                dc.drawarc(v[0], v[1], v[2], v[3] / 57.29577951308232, v[4] / 57.29577951308232);
            else
                dc.textout(v[1], v[2], text, 0, 0);
        }
        font.reset();
        ASSERT_EQ(device.lines().size(), direct.size());
        for (std::size_t i = 0; i < direct.size(); ++i) ExpectSamePixels(direct[i], device.lines()[i]);
    }
}

TEST_F(Agreement, OfTheSheetOnEverySink) {
    LoadFonts();
    const auto ready = [this](int type, int flip) -> CTqDraw& {
        CTqDraw& dc = MakeContext(type);
        dc.SetViewDrawDC(&device, 5.0, 0.0, 0.0, 1400, 1000, flip);
        device.Clear();
        return dc;
    };
    const auto count = [](const Lines& lines, const char* name) {
        return std::count_if(lines.begin(), lines.end(),
                             [name](const std::string& line) { return line.rfind(name, 0) == 0; });
    };
    zm::test::DrawSheet(ready(0, 0));
    const Lines onDevice = device.lines();
    zm::test::DrawSheet(ready(0, 1));
    const Lines turned = device.lines();
    EXPECT_EQ(turned.size(), onDevice.size());
    zm::test::DrawSheet(ready(2, 0));
    EXPECT_EQ(device.lines(), onDevice);  // black or not, the same strokes

    CTqDraw& dc = ready(3, 0);
    zm::test::DrawSheet(dc);
    const Lines recorded = Recorded(dc);
    EXPECT_EQ(count(recorded, "Line2"), count(onDevice, "LineTo") + 4);  // the null pen draws nothing
    EXPECT_EQ(count(recorded, "Arc"), count(onDevice, "Arc") + count(onDevice, "SetPixel") - 4 - 4 - 4);
    EXPECT_EQ(count(recorded, "Text") + 2, count(onDevice, "TextOut"));  // textRout is not recorded

    zm::test::DrawSheet(ready(1, 0));
    EXPECT_EQ(count(writer.calls, "arc"), count(recorded, "Arc"));
    EXPECT_EQ(count(writer.calls, "text"), count(onDevice, "TextOut"));
    EXPECT_EQ(count(writer.calls, "point"), count(recorded, "Pixel"));
    EXPECT_TRUE(host.boxes.empty());
}

TEST_F(Agreement, OfPolylinesInsideTheArea) {
    ZM_TRACE_SEED();
    Random random(2);
    for (int round = 0; round < 20; ++round) {
        std::vector<double> xy(2 * static_cast<std::size_t>(random.Int(2, 40)));
        for (double& v : xy) v = random.Real(0.0, 50.0);
        const int n = static_cast<int>(xy.size() / 2);
        CTqDraw& dc = MakeContext(3);
        EXPECT_EQ(dc.lines(n, xy.data()), n - 1);
        const Lines recorded = Recorded(dc);
        dc.SetTqDCType(1);
        writer.calls.clear();
        EXPECT_EQ(dc.lines(n, xy.data()), n);
        ASSERT_EQ(writer.calls.size(), 1u);
        std::istringstream in(writer.calls[0]);
        std::string word;
        in >> word;
        ASSERT_EQ(recorded.size(), static_cast<std::size_t>(n) + 1);
        std::string x, y;
        in >> x >> y;
        for (int i = 1; i < n; ++i) {
            std::string nextX, nextY;
            in >> nextX >> nextY;
            EXPECT_EQ(recorded[static_cast<std::size_t>(i)], "Line2:" + x + ":" + y + ":" + nextX + ":" + nextY);
            x = nextX;
            y = nextY;
        }
    }
}

}  // namespace
