// Runs that are killed in the middle of their outputs, and runs side by side in one folder with fresh settings.
#include <gtest/gtest.h>

#include <chrono>
#include <cstdlib>
#include <filesystem>
#include <map>

#include "tests/support/random.h"
#include "tests/support/rounds.h"
#include "tests/zenro/program.h"

namespace {

using namespace zm::test;
using Clock = std::chrono::steady_clock;

const char* const kForms[] = {"svg", "dwg", "dxf", "rec"};

// Two maps, so that it is seen which one an output holds.
void WriteMaps(const Program& zenro) {
    zenro.File("r.rules", "* -> symbol 200\n");
    for (const auto& [name, count] : {std::pair("a", 300), std::pair("b", 400)}) {
        std::string features;
        for (int i = 0; i < count; ++i)
            features +=
                (i > 0 ? "," : "") +
                LineFeature("[40512010,34560" + std::to_string(10 + i % 80) + "],[40512090,3456080]", "\"a\":1");
        zenro.File(std::string(name) + ".geojson", Collection(features));
    }
}

std::vector<std::string> DrawAll(const std::string& map, const std::string& stem) {
    std::vector<std::string> arguments = {"draw", map + ".geojson", "--rules", "./r.rules", "--scale",
                                          "1000", "--overwrite",    "--title", "map"};
    for (const char* form : kForms) arguments.insert(arguments.end(), {"-o", stem + "." + form});
    return arguments;
}

TEST(SideBySide, AKilledRunLeavesTheOldOutputOrTheNewOneWhole) {
    ZM_TRACE_SEED();
    Random random(21);
    const Program zenro;
    WriteMaps(zenro);
    std::map<std::string, std::map<std::string, std::string>> whole;  // map, form: bytes
    const auto begin = Clock::now();
    for (const char* map : {"a", "b"}) {
        ASSERT_EQ(zenro.Run(DrawAll(map, "out")).status, 0);
        for (const char* form : kForms) whole[map][form] = ReadFile(zenro / (std::string("out.") + form));
    }
    const auto longest = std::chrono::duration_cast<std::chrono::microseconds>(Clock::now() - begin).count() * 6 / 10;
    int old = 0, replaced = 0, killed = 0;
    std::map<std::string, std::string> there;  // form: the map that it holds
    for (const char* form : kForms) there[form] = "b";
    for (int round = 0; round < KillRounds(50); ++round) {
        const std::string map = round % 2 == 0 ? "a" : "b";
        const Outcome end = zenro.RunKilledAfter(DrawAll(map, "out"), random.Int(1000, static_cast<int>(longest)));
        killed += end.status == 128 + 9 ? 1 : 0;
        for (const char* form : kForms) {
            const std::string now = ReadFile(zenro / (std::string("out.") + form));
            const bool isNew = now == whole[map][form];
            ASSERT_TRUE(isNew || now == whole[there[form]][form])
                << "round " << round << ": out." << form << " of " << now.size() << " bytes is neither map";
            if (isNew) there[form] = map;
            ++(isNew ? replaced : old);
        }
    }
    EXPECT_GT(killed, 0);
    EXPECT_GT(old, 0);
    EXPECT_GT(replaced, 0);
    ASSERT_EQ(zenro.Run(DrawAll("a", "out")).status, 0);
    EXPECT_TRUE(zenro.Unfinished().empty()) << "the next run removes what the killed ones left";
}

// Several runs at once: outputs of their own and one that all of them replace, in a folder without settings. None
// takes the unfinished file of another one away.
TEST(SideBySide, RunsInOneFolderWithFreshSettingsAllEndWell) {
    const Program zenro;
    WriteMaps(zenro);
    ASSERT_EQ(zenro.Run(DrawAll("a", "alone")).status, 0);
    const std::string whole = ReadFile(zenro / "alone.svg");
    zenro.File("run.sh", "cd '" + zenro.folder().string() +
                             "'\nexport XDG_CONFIG_HOME=$PWD/fresh ZENRO='" ZENRO_PROGRAM "'\n" +
                             R"(for round in 1 2 3; do
  rm -rf fresh
  for i in 1 2 3 4 5; do
    "$ZENRO" draw a.geojson --rules ./r.rules --scale 1000 --title map --overwrite \
      -o own$i.svg -o one.svg -o own$i.dwg >said$i.txt 2>&1 || { cat said$i.txt; touch failed; } &
  done
  wait
  cat one.svg >>all.svg
done
)");
    ASSERT_EQ(std::system(("bash '" + (zenro / "run.sh").string() + "' >&2").c_str()), 0);
    EXPECT_FALSE(zenro.Has("failed"));
    EXPECT_EQ(ReadFile(zenro / "all.svg"), whole + whole + whole);
    for (int i = 1; i <= 5; ++i) {
        EXPECT_EQ(ReadFile(zenro / ("own" + std::to_string(i) + ".svg")), whole);
        EXPECT_EQ(ReadFile(zenro / ("own" + std::to_string(i) + ".dwg")), ReadFile(zenro / "alone.dwg"));
    }
    EXPECT_TRUE(zenro.Unfinished().empty());
}

}  // namespace
