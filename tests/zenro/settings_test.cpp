// settings: the tables as lists, and what is said where no window can be shown. Windows are tested with the dialogs.
#include <gtest/gtest.h>

#include <nlohmann/json.hpp>

#include "runtime/text/gbk.h"
#include "tests/zenro/program.h"

namespace {

using namespace zm::test;

std::string Project(const Program& zenro) {
    return zenro.File("town.ini",
                      zm::gbk::FromUtf8("[LayerSet]\nLayers=2\nLayer1=道路 430 460 7 1\nLayer2=PIPE 500 510 4 0\n"));
}

TEST(Settings, ListPrintsTheLayersOfAProjectInColumns) {
    const Program zenro;
    const Outcome r = zenro.Run({"settings", "layers", "--project", Project(zenro), "--list"});
    EXPECT_EQ(r.status, 0) << r.err;
    EXPECT_EQ(r.out,
              "name  start  end  colour  shown\n"
              "道路    430  460       7  yes\n"
              "PIPE    500  510       4  no\n");
}

TEST(Settings, ListPrintsTheLayersAsJson) {
    const Program zenro;
    const Outcome r = zenro.Run({"settings", "layers", "--project", Project(zenro), "--list", "--json"});
    const auto out = nlohmann::json::parse(r.out);
    EXPECT_EQ(out["file"], (zenro / "town.ini").string());
    ASSERT_EQ(out["layers"].size(), 2u);
    EXPECT_EQ(out["layers"][0]["name"], "道路");
    EXPECT_EQ(out["layers"][0]["colour"], 7);
    EXPECT_EQ(out["layers"][1]["shown"], false);
}

TEST(Settings, EachTableIsListedAsTextAndAsJson) {
    const Program zenro;
    for (const char* table : {"layers", "pens", "notes", "fonts", "colours"}) {
        const Outcome text = zenro.Run({"settings", table, "--list"});
        EXPECT_EQ(text.status, 0) << text.err;
        EXPECT_FALSE(text.out.empty()) << table;
        const Outcome json = zenro.Run({"settings", table, "--list", "--json"});
        const auto out = nlohmann::json::parse(json.out);
        EXPECT_TRUE(out.contains("file") && out[table].is_array()) << table;
        EXPECT_FALSE(out[table].empty() && std::string(table) != "pens") << table;
    }
}

TEST(Settings, TheUsersOwnColoursAreListed) {
    const Program zenro;
    std::filesystem::create_directories(zenro / "config/zenromath");
    const Outcome before = zenro.Run({"settings", "colours", "--list", "--json"});
    const auto file = nlohmann::json::parse(before.out)["file"].get<std::string>();
    std::filesystem::create_directories(std::filesystem::path(file).parent_path());
    WriteFile(file, "[PenColor]\n1=1,2,3\n");
    const Outcome r = zenro.Run({"settings", "colours", "--list", "--json"});
    const auto out = nlohmann::json::parse(r.out);
    EXPECT_EQ(out["colours"][0]["red"], 1);
    EXPECT_EQ(out["colours"][0]["blue"], 3);
    EXPECT_EQ(out["colours"].size(), 9u);
}

TEST(Settings, WithoutADisplayItSaysSoAndLeavesTheFilesAlone) {
    const Program zenro;
    const std::string project = Project(zenro);
    const std::string before = ReadFile(project);
    for (const char* table : {"layers", "pens", "notes", "fonts", "colours"}) {
        // None, and one that is gone.
        const std::string display = std::string(table) == "pens" ? "DISPLAY=:987" : "DISPLAY=";
        const Outcome r = zenro.Run({"settings", table, "--project", project}, "", {display, "WAYLAND_DISPLAY="});
        EXPECT_EQ(r.status, 1) << table << r.err;
        EXPECT_TRUE(r.out.empty()) << r.out;
#if ZENRO_HAS_QT
        EXPECT_NE(r.err.find("there is no display"), std::string::npos) << r.err;
        EXPECT_NE(r.err.find("--list"), std::string::npos) << r.err;
#endif
    }
    EXPECT_EQ(ReadFile(project), before);
}

TEST(Settings, AProjectThatIsNotThereIsReported) {
    const Program zenro;
    const Outcome r = zenro.Run({"settings", "layers", "--project", "no.ini", "--list"});
    EXPECT_EQ(r.status, 3);
    EXPECT_NE(r.err.find("no.ini"), std::string::npos);
}

TEST(Settings, NeedsATable) {
    EXPECT_EQ(Program().Run({"settings"}).status, 2);
    EXPECT_EQ(Program().Run({"settings", "roads"}).status, 2);
}

}  // namespace
