// DXF of whole maps, read by ezdxf and GDAL and compared with the drawing entity by entity.
#include <gtest/gtest.h>

#include <cstdlib>

#include "tests/zenro/program.h"

namespace {

using namespace zm::test;

class DxfReaders : public testing::Test {
 protected:
    // Draws to map.dwg and map.dxf and compares them; what is missing where the readers are not installed.
    std::string Compare(std::vector<std::string> draw) {
        const std::string folder = m_zenro.folder().string();
        draw.insert(draw.end(), {"-o", "map.dwg", "-o", "map.dxf", "--overwrite", "--quiet"});
        const Outcome drawn = m_zenro.Run(draw);
        EXPECT_TRUE(drawn.status == 0 || drawn.status == 4) << drawn.err;
        EXPECT_EQ(m_zenro.Run({"dwg", "check", "map.dwg"}).status, 0);
        m_zenro.File("map.jsonl", m_zenro.Run({"dwg", "info", "map.dwg", "--json"}).out + "\n" +
                                      m_zenro.Run({"dwg", "dump", "map.dwg", "--json"}).out);
        const std::string command = "cd '" + folder +
                                    "' && " ZM_DXF_PYTHON " '" ZENRO_SOURCE_DIR
                                    "/tests/dwg/dxf/compare_dxf.py' map.dxf map.jsonl >said.txt 2>&1";
        const int status = std::system(command.c_str());
        if (status == 77 << 8) return "python3-ezdxf and python3-gdal are needed: " + ReadFile(m_zenro / "said.txt");
        EXPECT_EQ(status, 0) << ReadFile(m_zenro / "said.txt");
        EXPECT_NE(ReadFile(m_zenro / "said.txt").find(" 0 differences"), std::string::npos);
        return {};
    }
    std::vector<std::string> DemoBy(const std::string& rules) {
        EXPECT_EQ(m_zenro.Run({"demo", "--data-only", ".", "--overwrite", "--quiet"}).status, 0);
        std::vector<std::string> draw = {"draw"};
        for (const char* name : {"boundaries", "buildings", "control", "names", "structures", "terrain", "traffic",
                                 "utilities", "vegetation", "water"})
            draw.push_back("data/" + std::string(name) + ".geojson");
        draw.insert(draw.end(), {"--rules", rules});
        return draw;
    }
    Program m_zenro;
};

TEST_F(DxfReaders, FindEveryEntityOfTheDemo) {
    const std::string missing = Compare(DemoBy("demo"));
    if (!missing.empty()) GTEST_SKIP() << missing;
}

TEST_F(DxfReaders, FindEveryBlockAndSolidOfTheDemo) {
    std::string rules = ReadFile(std::string(ZENRO_SOURCE_DIR) + "/data/rules/demo.rules");
    const std::string river = "-> symbol 500";
    ASSERT_NE(rules.find(river), std::string::npos);
    rules.insert(rules.find(river) + river.size(), ", solid 141");
    m_zenro.File("solid.rules", rules);
    std::vector<std::string> draw = DemoBy("./solid.rules");
    draw.insert(draw.end(), {"--symbols-as", "blocks"});
    const std::string missing = Compare(draw);
    if (!missing.empty()) GTEST_SKIP() << missing;
    const std::string dxf = ReadFile(m_zenro / "map.dxf");
    EXPECT_GT(Count(dxf, "\nSOLID"), 20);
    EXPECT_GT(Count(dxf, "\nINSERT"), 500);
}

}  // namespace
