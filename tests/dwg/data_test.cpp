// The template drawing and the linetype file that go with the library.
#include <fstream>
#include <nlohmann/json.hpp>
#include <set>

#include "dwg/writer/line_pattern.h"
#include "dwg/writer/output_file.h"
#include "dwg/writer/writer.h"
#include "tests/dwg/drawing.h"
#include "tools/make_template/template_drawing.h"
#include "tools/make_template/variables.h"

namespace zm::test {
namespace {

const std::filesystem::path kData = std::filesystem::path(ZM_SOURCE_DIR) / "data";

TEST(TemplateDrawing, HasTheBytesOfTheRecordedTemplate) {
    const auto files =
        nlohmann::json::parse(ReadFile(std::filesystem::path(ZM_SOURCE_DIR) / "tests/vectors/dwg-files.json"));
    EXPECT_EQ(Hex(tool::TemplateDrawing()), files.at("templates").at("plain").get<std::string>());
    EXPECT_EQ(tool::TemplateDrawing().size(), 3037u);
}

TEST(TemplateDrawing, VariablesFillTheirPlaceWithoutAGap) {
    std::size_t place = 94;
    int count = 0;
    for (const tool::Variable& variable : tool::kVariables) {
        EXPECT_EQ(variable.offset, place) << variable.name;
        place += variable.size;
        ++count;
    }
    EXPECT_EQ(place, 1310u);
    EXPECT_EQ(count, 159);  // MENU stands in two pieces, the others in one
}

TEST(TemplateDrawing, SaysWhatAPlainDrawingIs) {
    const Drawing drawing(tool::TemplateDrawing());
    EXPECT_EQ(drawing.bytes().substr(0, 6), "AC1006");
    EXPECT_EQ(drawing.f64(120), 1e20);  // nothing drawn yet
    EXPECT_EQ(drawing.f64(184), 420);   // limits
    EXPECT_EQ(drawing.f64(306), 1);     // linetype scale
    EXPECT_EQ(drawing.f64(314), 2.5);   // text height
    EXPECT_EQ(drawing.u16(1017), 39u);  // GBK
    EXPECT_EQ(NameOf(drawing.Layer(0)), "0");
    EXPECT_EQ(NameOf(drawing.Style(0)), "STANDARD");
    EXPECT_EQ(drawing.Style(0)[0], '@');
    const std::vector<std::string> names = {"CONTINUOUS", "0", "1", "2", "3", "4", "5", "6"};
    for (std::size_t i = 0; i < names.size(); ++i) EXPECT_EQ(NameOf(drawing.Linetype(i)), names[i]);
}

// Names of the entries, in the order of the file.
std::vector<std::string> NamesOfFile() {
    std::ifstream file(kData / "ACAD.LIN");
    std::vector<std::string> names;
    for (std::string line; std::getline(file, line);)
        if (line.rfind('*', 0) == 0) names.push_back(line.substr(1, line.find(',') - 1));
    return names;
}

TEST(LinetypeFile, GivesEveryNameItsOwnPattern) {
    const auto names = NamesOfFile();
    EXPECT_EQ(names.size(), 33u);
    std::set<std::string> seen;
    for (const std::string& name : names) {
        EXPECT_TRUE(seen.insert(name).second) << name;
        EXPECT_LT(name.size(), 20u);
        for (const std::string& before : seen)
            EXPECT_TRUE(before == name || before.rfind(name, 0) != 0) << before << " hides " << name;
        const dwg::FileOwner file(std::fopen((kData / "ACAD.LIN").string().c_str(), "rb"));
        dwg::LinePattern pattern;
        EXPECT_EQ(dwg::ReadLinePattern(file.get(), name.c_str(), pattern), dwg::PatternResult::found) << name;
        EXPECT_FALSE(pattern.cut) << name;
    }
}

TEST(LinetypeFile, HasTheNumbersThatPensAskForAndTheUsualNames) {
    const auto names = NamesOfFile();
    const std::set<std::string> all(names.begin(), names.end());
    for (const char* name :
         {"0", "1", "2", "3", "4", "5", "6", "DASHED", "HIDDEN", "CENTER", "DOT", "DASHDOT", "BORDER"})
        EXPECT_EQ(all.count(name), 1u) << name;
}

TEST_F(DrawingTest, TheNumbersOfTheFileHaveThePatternsOfTheTemplate) {
    for (const char* name : {"1", "2", "3", "4"}) {
        const dwg::FileOwner file(std::fopen((kData / "ACAD.LIN").string().c_str(), "rb"));
        dwg::LinePattern pattern;
        ASSERT_EQ(dwg::ReadLinePattern(file.get(), name, pattern), dwg::PatternResult::found);
        const std::string record = Drawing(drawingTemplate).Linetype(static_cast<std::size_t>(name[0] - '0' + 1));
        EXPECT_EQ(record[82], pattern.count) << name;
        EXPECT_EQ(record.substr(83, 8), F64(pattern.length)) << name;
        for (int i = 0; i < pattern.count; ++i)
            EXPECT_EQ(record.substr(static_cast<std::size_t>(91 + 8 * i), 8), F64(pattern.elements[i])) << name;
    }
}

TEST_F(DrawingTest, TheFilesOfTheBuildServeADrawing) {
    WriteFile(dir / "acad.dwg", ReadFile(std::filesystem::path(ZM_BINARY_DIR) / "lib/acad.dwg"));
    WriteFile(dir / "ACAD.LIN", ReadFile(kData / "ACAD.LIN"));
    Open();
    SetLtype("center");
    _LDBline(1, 2, 3, 4);
    const Drawing drawing = Close();
    ExpectSound(drawing);
    EXPECT_EQ(drawing.Linetype(8).substr(91, 8), F64(30));
}

}  // namespace
}  // namespace zm::test
