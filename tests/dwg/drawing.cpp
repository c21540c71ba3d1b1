#include "tests/dwg/drawing.h"

#include <cstring>

#include "dwg/reader/check.h"
#include "dwg/writer/state.h"
#include "dwg/writer/writer.h"
#include "runtime/files/files.h"
#include "runtime/profile/project.h"
#include "runtime/state.h"
#include "runtime/text/numbers.h"
#include "tools/make_template/template_drawing.h"

namespace zm::test {
namespace {

constexpr std::size_t kPathSize = 256;
constexpr char kLinetypes[] =
    "; linetypes of the tests\n"
    "*BORDER,__ __ .\nA,.5,-.25,.5,-.25,0,-.25\n"
    "*DASHED,__ __\nA,.5,-.25\n"
    "*10,long dash\nA,10,-3\n"
    "*1,dash\nA,6,-2\n"
    "*EIGHT,eight\nA,8,-2\n";

}  // namespace

std::string Hex(const std::string& bytes) {
    static const char kDigits[] = "0123456789abcdef";
    std::string hex;
    for (const char c : bytes) {
        hex += kDigits[static_cast<unsigned char>(c) >> 4];
        hex += kDigits[static_cast<unsigned char>(c) & 15];
    }
    return hex;
}

std::string FromHex(const std::string& hex) {
    std::string bytes;
    int half = -1;
    for (const char c : hex) {
        if (c == ' ') continue;
        const int digit = c <= '9' ? c - '0' : c - 'a' + 10;
        if (half >= 0) bytes += static_cast<char>(half << 4 | digit);
        half = half >= 0 ? -1 : digit;
    }
    return bytes;
}

double Drawing::f64(std::size_t at) const {
    double value = 0.0;
    std::memcpy(&value, m_bytes.substr(at, 8).data(), 8);
    return value;
}

std::vector<std::string> Drawing::Entities() const {
    std::vector<std::string> records;
    for (std::size_t at = u32(20); at != u32(24);) {
        const std::size_t length = u16(at + 2);
        if (length < 8 || at + length > u32(24)) {
            ADD_FAILURE() << "no record at offset " << at;
            break;
        }
        records.push_back(m_bytes.substr(at, length));
        at += length;
    }
    return records;
}

std::string Drawing::Record(std::size_t addressField, std::size_t size, std::size_t i) const {
    return m_bytes.substr(u32(addressField) + i * size, size);
}

void ExpectSound(const Drawing& drawing) {
    drawing.Entities();
    std::uint32_t place = drawing.u32(50);
    EXPECT_EQ(drawing.u32(24), place);
    constexpr std::size_t kCounts[] = {46, 56, 66, 76, 86};
    constexpr std::uint32_t kSizes[] = {37, 37, 194, 187, 91};
    for (int i = 0; i < 5; ++i) {
        EXPECT_EQ(drawing.u32(kCounts[i] + 4), place) << "table " << i;
        place += drawing.u32(kCounts[i]) * kSizes[i];
    }
    EXPECT_EQ(drawing.u32(28), place);
    const Drawing section(drawing.BlockSection());
    std::size_t at = 0;
    while (at < section.size()) {
        const unsigned length = section.u16(at + 2);
        ASSERT_GE(length, 8u) << "block section, offset " << at;
        at += length + (section.u8(at) == 14 ? 2 : 0);
    }
    EXPECT_EQ(at, section.size());
    for (std::size_t i = 0; i < drawing.u32(46); ++i) {
        const Drawing record(drawing.Block(i));
        if (record.u16(35) != 16384) continue;  // a hole
        ASSERT_LT(record.u16(33), section.size()) << "block " << i;
        EXPECT_EQ(section.u8(record.u16(33)), 12u) << "block " << i;
    }
}

std::vector<std::string> ProblemsOf(const Drawing& drawing) {
    std::vector<std::string> problems;
    const dwg::reader::Drawing read({drawing.bytes().begin(), drawing.bytes().end()});
    for (const dwg::reader::Finding& problem : dwg::reader::Check(read).problems)
        if (!problem.byCopy) problems.push_back("offset " + std::to_string(problem.offset) + ": " + problem.text);
    return problems;
}

std::string NameOf(const std::string& record) {
    return record.substr(1, 32).c_str();
}

DrawingTest::DrawingTest() : drawingTemplate(tool::TemplateDrawing()) {
    runtime::StartProjectFiles();
    // Nothing is found or made outside the folder.
    const std::string module = files::PathText(dir / "module");
    numbers::Print(runtime::Project().moduleDirectory, kPathSize, "%s", module.c_str());
    numbers::Print(runtime::Project().iniDirectory, kPathSize, "%s\\ZenroIni", module.c_str());
    dwg::ResetState();
    Write("acad.dwg", drawingTemplate);
    Write("ACAD.LIN", kLinetypes);
}

DrawingTest::~DrawingTest() {
    dwg::ResetState();
    runtime::ResetState();
}

void DrawingTest::Open(std::string name) {
    m_name = name;
    _LDBopendwg(name.data());
}

namespace {

// Whether a problem is one of those that a test names, with a bar between two.
bool IsNamed(const std::string& problem, const std::string& names) {
    std::istringstream list(names);
    for (std::string name; std::getline(list, name, '|');)
        if (problem.find(name) != std::string::npos) return true;
    return false;
}

}  // namespace

Drawing DrawingTest::Close() {
    _LDBclosedwg();
    const Drawing closed = ReadDrawing(m_name);
    bool known = knownProblem.empty();
    for (const std::string& problem : ProblemsOf(closed)) {
        if (IsNamed(problem, knownProblem))
            known = true;
        else
            ADD_FAILURE() << "the drawing is not sound: " << problem;
    }
    EXPECT_TRUE(known) << "the reader does not say: " << knownProblem;
    return closed;
}

std::vector<std::string> DrawingTest::Messages() const {
    std::vector<std::string> texts;
    for (const ShownBox& box : host.boxes)
        if (box.title != "file open error") texts.push_back(box.text);
    return texts;
}

void SetLay(std::string name) {
    _LDBsetlay(name.data());
}

void SetLtype(std::string name) {
    _LDBsetltype(name.data());
}

void SetStyle(int type, std::string name, std::string font, double width, double oblique) {
    _LDBsetstyle(type, name.data(), font.data(), width, oblique);
}

}  // namespace zm::test
