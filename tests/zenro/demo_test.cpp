#include <gtest/gtest.h>

#include <nlohmann/json.hpp>
#include <set>

#include "tests/zenro/program.h"
#include "tools/zenro/map/rules.h"

namespace {

using namespace zm::test;
namespace fs = std::filesystem;

TEST(Demo, WritesDataAndAllPicturesAndPrintsTheirPaths) {
    const Program zenro;
    const Outcome r = zenro.Run({"demo", "out"});
    EXPECT_EQ(r.status, ZENRO_HAS_QT ? 0 : 4) << r.err;
    for (const char* name : {"svg", "dwg", "rec"}) {
        EXPECT_TRUE(zenro.Has("out/demo." + std::string(name)));
        EXPECT_NE(r.out.find("out/demo." + std::string(name) + "\n"), std::string::npos);
    }
    EXPECT_EQ(zenro.Has("out/demo.png"), ZENRO_HAS_QT);
    EXPECT_EQ(zenro.Run({"dwg", "check", "out/demo.dwg"}).status, 0);
    EXPECT_EQ(zenro.Run({"demo", "out"}).status, 5);
    EXPECT_EQ(zenro.Run({"demo", "out", "--overwrite", "--quiet"}).status, ZENRO_HAS_QT ? 0 : 4);
}

TEST(Demo, TheSameSeedGivesTheDataOfTheRepository) {
    const Program zenro;
    EXPECT_EQ(zenro.Run({"demo", "out", "--data-only"}).status, 0);
    int files = 0;
    for (const auto& entry : fs::directory_iterator(fs::path(ZENRO_SOURCE_DIR) / "data" / "demo")) {
        if (entry.path().extension() != ".geojson") continue;
        ++files;
        EXPECT_EQ(ReadFile(zenro / ("out/data/" + entry.path().filename().string())), ReadFile(entry.path()))
            << entry.path().filename() << ": write the data anew with zenro demo --data-only";
    }
    EXPECT_EQ(files, 10);
}

TEST(Demo, AnotherSeedGivesAnotherTown) {
    const Program zenro;
    zenro.Run({"demo", "a", "--data-only", "--seed", "1"});
    zenro.Run({"demo", "b", "--data-only", "--seed", "2"});
    EXPECT_NE(ReadFile(zenro / "a/data/buildings.geojson"), ReadFile(zenro / "b/data/buildings.geojson"));
}

TEST(Demo, EveryKindOfSymbolAndEveryRuleAppears) {
    const Program zenro;
    std::map<int, std::string> kinds;
    for (const auto& s : nlohmann::json::parse(zenro.Run({"symbols", "list", "--json"}).out))
        kinds[s["code"]] = s["kind"];
    const auto rules = zm::tool::ReadRules(fs::path(ZENRO_SOURCE_DIR) / "data" / "rules" / "demo.rules");
    std::set<std::string> seen, wanted;
    std::string data;
    for (const auto& entry : fs::directory_iterator(fs::path(ZENRO_SOURCE_DIR) / "data" / "demo"))
        if (entry.path().extension() == ".geojson") data += ReadFile(entry.path());
    for (const auto& rule : rules.rules) {
        ASSERT_EQ(rule.condition.rfind("kind = '", 0), 0u) << rule.line;
        const std::string kind = rule.condition.substr(8, rule.condition.size() - 9);
        EXPECT_NE(data.find("\"kind\":\"" + kind + "\""), std::string::npos) << kind << " is in no feature";
        if (rule.symbol > 0) {
            EXPECT_EQ(kinds.count(rule.symbol), 1u) << "symbol " << rule.symbol;
            seen.insert(kinds[rule.symbol]);
        }
    }
    EXPECT_EQ(seen, (std::set<std::string>{"G", "LC", "L", "E", "H", "Y"}));
}

}  // namespace
