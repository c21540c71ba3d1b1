// DXF read back by ezdxf and GDAL, entity by entity against the drawing.
#include <gtest/gtest.h>

#include <algorithm>
#include <cstdlib>
#include <fstream>
#include <map>
#include <sstream>

#include "dwg/dxf/dxf_writer.h"
#include "dwg/reader/dump.h"
#include "dwg/reader/picture.h"
#include "tests/dwg/reader/real_drawings.h"
#include "tests/dwg/reader/recorded.h"
#include "tests/support/scratch.h"

namespace zm::test {
namespace {

using dwg::reader::Drawing;
using dwg::reader::Record;

std::string DxfOf(const Drawing& drawing, dwg::dxf::Options options = {}, long* leftOut = nullptr) {
    std::string text;
    dwg::dxf::Count count;
    EXPECT_TRUE(WriteDxf(
        drawing, options, [&](std::string_view part) { return text += part, true; }, count));
    if (leftOut != nullptr) *leftOut = count.leftOut;
    return text;
}

// The tables and the records as lines of JSON, those of blocks with the block's number.
std::string RecordsOf(const Drawing& drawing) {
    std::string lines = Info(drawing, true) + "\n";
    const auto add = [&](const Record& record, const std::string& block) {
        std::string line = Line(drawing, record, true);
        lines += line.insert(1, block) + "\n";
        return true;
    };
    ForEachInOrder(drawing, [&](const Record& record) { return add(record, ""); });
    for (std::size_t i = 0; i < drawing.blocks.size(); ++i)
        ForEachInBlockInOrder(drawing, i, [&](const Record& record) {
            return add(record, "\"block_index\":" + std::to_string(i) + ",");
        });
    return lines;
}

class Dxf : public testing::Test {
 protected:
    void Add(const Drawing& drawing, dwg::dxf::Options options = {}) {
        const std::string name = "drawing" + std::to_string(m_count++);
        const auto quoted = [&](const std::string& file) { return " '" + (m_dir / file).string() + "'"; };
        WriteFile(m_dir / (name + ".dxf"), DxfOf(drawing, options));
        WriteFile(m_dir / (name + ".jsonl"), RecordsOf(drawing));
        m_files += quoted(name + ".dxf") + quoted(name + ".jsonl");
    }
    // Whether the readers find the same; says what is missing where they are not installed.
    std::string Compare(const std::string& options = {}) {
        const std::string said = (m_dir / "said.txt").string();
        const std::string command =
            std::string(ZM_DXF_PYTHON) + " '" ZM_DXF_SCRIPT "'" + options + m_files + " > '" + said + "' 2>&1";
        const int status = std::system(command.c_str());
        if (status == 77 << 8) return "python3-ezdxf and python3-gdal are needed: " + ReadFile(said);
        EXPECT_EQ(status, 0) << ReadFile(said);
        return {};
    }

 private:
    ScratchDir m_dir;
    std::string m_files;
    int m_count = 0;
};

TEST_F(Dxf, OfRecordedDrawingsReadsTheSame) {
    int count = 0;
    for (const auto& recorded : RecordedDrawings())
        if (count++ % 4 == 0 || recorded.id == "demo") Add(Drawing(recorded.bytes));
    const std::string missing = Compare();
    if (!missing.empty()) GTEST_SKIP() << missing;
}

TEST_F(Dxf, InUtf8ReadsTheSame) {
    for (const auto& recorded : RecordedDrawings())
        if (recorded.id == "demo") Add(Drawing(recorded.bytes), {true});
    const std::string missing = Compare(" --utf8");
    if (!missing.empty()) GTEST_SKIP() << missing;
}

TEST_F(Dxf, OfRealDrawingsReadsTheSame) {
    ZM_NEED_REAL_DRAWINGS();
    for (const RealDrawing& real : RealDrawings())
        if (!real.Of("entity").empty()) Add(Drawing(real.bytes));
    const std::string missing = Compare();
    if (!missing.empty()) GTEST_SKIP() << missing;
}

// The numbers of the groups after a name: those of a variable, or of the view that is opened.
std::map<int, double> GroupsAfter(const std::string& dxf, const std::string& name) {
    std::istringstream lines(dxf.substr(std::min(dxf.find("\n" + name + "\n"), dxf.size() - 1) + name.size() + 2));
    lines.imbue(std::locale::classic());
    std::map<int, double> groups;
    int code = 0;
    for (double value = 0.0; lines >> code && code != 9 && code != 0 && lines >> value;) groups.emplace(code, value);
    return groups;
}

TEST_F(Dxf, HasTheExtentsAndTheViewOfTheDrawing) {
    int known = 0, found = 0;
    for (const auto& recorded : RecordedDrawings()) {
        Drawing drawing(recorded.bytes);
        dwg::reader::Point low, high;
        if (!Extents(drawing, low, high)) continue;
        auto& v = drawing.variables;
        for (const bool stated : {true, false}) {
            SCOPED_TRACE(recorded.id);
            if (stated) {
                low = v.extentsLow = {10.5, -20.25, 3.0};
                high = v.extentsHigh = {110.0, 79.75, 4.0};
                v.viewCentre = {60.0, 30.0, 0.0};
                v.viewHeight = 120.0;
            } else {
                Extents(drawing, low, high);
                v.extentsLow = {1e20, 1e20, 1e20};
                v.viewHeight = 0.0;  // none: the extents are opened
            }
            const std::string dxf = DxfOf(drawing);
            const auto least = GroupsAfter(dxf, "$EXTMIN"), most = GroupsAfter(dxf, "$EXTMAX");
            EXPECT_EQ(least, (std::map<int, double>{{10, low.x}, {20, low.y}, {30, low.z}}));
            EXPECT_EQ(most, (std::map<int, double>{{10, high.x}, {20, high.y}, {30, high.z}}));
            auto view = GroupsAfter(dxf, "*ACTIVE");
            EXPECT_EQ(view[12], stated ? 60.0 : (low.x + high.x) / 2);
            EXPECT_EQ(view[22], stated ? 30.0 : (low.y + high.y) / 2);
            EXPECT_EQ(view[40], stated ? 120.0 : std::max(high.y - low.y, 1.0));
            ++(stated ? known : found);
        }
    }
    EXPECT_GT(known, 10);
    EXPECT_EQ(known, found);
}

TEST_F(Dxf, HasGbkBytesOrUtf8AsAsked) {
    for (const auto& recorded : RecordedDrawings()) {
        if (recorded.id != "demo") continue;
        const Drawing drawing(recorded.bytes);
        const std::string gbk = DxfOf(drawing), utf8 = DxfOf(drawing, {true});
        EXPECT_NE(gbk.find("$DWGCODEPAGE\n3\nANSI_936\n"), std::string::npos);
        EXPECT_NE(utf8.find("$DWGCODEPAGE\n3\nUTF-8\n"), std::string::npos);
        EXPECT_EQ(gbk.rfind("0\nEOF\n"), gbk.size() - 6);
    }
}

TEST_F(Dxf, OfDamagedDrawingsIsWholeAndStaysSmall) {
    ZM_NEED_REAL_DRAWINGS();
    for (const RealDrawing& real : RealDrawings()) {
        if (real.name.find("entities-2d") == std::string::npos && real.name.find("JUMP1") == std::string::npos)
            continue;
        for (std::size_t i = 0; i < real.bytes.size(); i += 3) {
            auto bytes = real.bytes;
            bytes[i] = i % 2 == 0 ? 0xFF : static_cast<std::uint8_t>(bytes[i] ^ 1 << i % 8);
            const std::string text = DxfOf(Drawing(std::move(bytes)));
            EXPECT_EQ(text.rfind("0\nEOF\n"), text.size() - 6) << i;
        }
    }
}

}  // namespace
}  // namespace zm::test
