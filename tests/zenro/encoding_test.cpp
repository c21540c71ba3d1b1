// Texts of map data in the encodings that surveyors have.
#include "runtime/text/gbk.h"
#include "tests/zenro/draw_fixture.h"
#include "tools/kit/exit_codes.h"
#include "tools/zenro/map/dataset.h"

namespace {

using namespace zm::test;
using Encoding = DrawFixture;

constexpr char kUtf8[] = "名称;高程;WKT\n清溪路;5;POINT(40512050 3456050)\n桥头;9;POINT(40512060 3456060)\n";
constexpr char kRules[] = "名称 = '清溪路' -> symbol 17, label 名称\n* -> skip\n";

class NamedEncoding : public Encoding, public testing::WithParamInterface<const char*> {};
TEST_P(NamedEncoding, WorksForCsv) {
    const bool utf8 = std::string(GetParam()).find("8") != std::string::npos && GetParam()[0] != 'G';
    const Outcome r = DrawFile("in.csv", utf8 ? kUtf8 : zm::gbk::FromUtf8(kUtf8), kRules,
                               {"--encoding", GetParam(), "--source", "EPSG:4528", "--scale", "1000", "--sheet",
                                "40512000,3456000,40512100,3456100"});
    EXPECT_EQ(r.status, 0) << r.err;
    EXPECT_EQ(r.err, "");
    EXPECT_NE(Recording().find(zm::gbk::FromUtf8("清溪路")), std::string::npos);
}
INSTANTIATE_TEST_SUITE_P(Names, NamedEncoding,
                         testing::Values("GBK", "gbk", "GB2312", "CP936", "936", "ANSI_936", "GB18030", "UTF-8",
                                         "utf8"));

TEST_F(Encoding, UnknownNamesAreRefused) {
    const Outcome r = DrawFile("in.csv", kUtf8, kRules, {"--encoding", "GBX"});
    EXPECT_EQ(r.status, 2);
    EXPECT_NE(r.err.find("error: --encoding GBX: no encoding of this name; use GBK"), std::string::npos) << r.err;
}

TEST_F(Encoding, BytesThatAreNoUtf8AreToldWithTheOption) {
    const Outcome r = DrawFile(
        "in.csv", zm::gbk::FromUtf8("name;WKT\n清溪路;POINT(40512050 3456050)\n"), "* -> symbol 17, label name",
        {"--source", "EPSG:4528", "--scale", "1000", "--sheet", "40512000,3456000,40512100,3456100"});
    EXPECT_EQ(r.status, 4);
    EXPECT_NE(r.err.find("field \"name\" is no UTF-8, and cannot be read rightly; give --encoding GBK"),
              std::string::npos)
        << r.err;
}

TEST_F(Encoding, AWrongNameIsToldToo) {
    const Outcome r =
        DrawFile("in.csv", zm::gbk::FromUtf8(kUtf8), kRules, {"--encoding", "UTF-8", "--source", "EPSG:4528"});
    EXPECT_NE(r.status, 0);
    EXPECT_NE(r.err.find("is no UTF-8"), std::string::npos) << r.err;
}

TEST_F(Encoding, AShapefileWithoutCodePageIsReadByTheNameGiven) {
    m_zenro.File("in.csv", kUtf8);
    const std::string make = "cd '" + m_zenro.folder().string() +
                             "' && ogr2ogr -q -lco ENCODING=GBK s.shp in.csv 2>/dev/null && rm -f s.cpg && "
                             "printf '\\000' | dd of=s.dbf bs=1 seek=29 conv=notrunc 2>/dev/null";
    if (std::system(make.c_str()) != 0) GTEST_SKIP() << "NOT CHECKED: ogr2ogr is missing";
    m_zenro.File("r.rules", kRules);
    const Outcome r =
        m_zenro.Run({"draw", "s.shp", "--rules", "./r.rules", "-o", "out.rec", "--encoding", "936", "--source",
                     "EPSG:4528", "--scale", "1000", "--sheet", "40512000,3456000,40512100,3456100"});
    EXPECT_EQ(r.status, 0) << r.err;
    EXPECT_NE(Recording().find(zm::gbk::FromUtf8("清溪路")), std::string::npos);
    const Outcome without =
        m_zenro.Run({"draw", "s.shp", "--rules", "./r.rules", "-o", "b.rec", "--source", "EPSG:4528", "--scale", "1000",
                     "--sheet", "40512000,3456000,40512100,3456100"});
    EXPECT_NE(without.status, 0);
    EXPECT_NE(without.err.find("give --encoding GBK"), std::string::npos) << without.err;
}

TEST(QuoteNames, LeavesAsciiAndQuotedTextsAlone) {
    EXPECT_EQ(zm::tool::QuoteNames("高程 > 6 AND name='桥 头' OR \"宽度\" IS NULL"),
              "\"高程\" > 6 AND name='桥 头' OR \"宽度\" IS NULL");
}

TEST_F(Encoding, FieldsThatNoLayerHasAreReported) {
    const Outcome r =
        DrawFile("in.csv", kUtf8, "高成 = 5 -> symbol 250\n* -> symbol 17, label 名陈\n",
                 {"--source", "EPSG:4528", "--scale", "1000", "--sheet", "40512000,3456000,40512100,3456100"});
    EXPECT_EQ(r.status, 0);
    EXPECT_NE(r.err.find("warning: ./r.rules:1: the condition \"高成 = 5\" asks for a field that no layer has."),
              std::string::npos)
        << r.err;
    EXPECT_NE(r.err.find("warning: ./r.rules:2: no layer has the field \"名陈\"."), std::string::npos) << r.err;
}

}  // namespace
