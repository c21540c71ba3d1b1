// The hash of a sheet's input: another one where anything changes that the drawing follows from.
#include "tools/zenro/map/input_hash.h"

#include <gtest/gtest.h>

#include <functional>

#include "tests/support/scratch.h"

namespace {

using namespace zm::tool;
using zm::test::WriteFile;

constexpr char kRules[] = "[* : line]\n* -> layer 250, symbol 250\n";

// A drawing of one line with files of its own, and a program of some version.
struct Input {
    zm::test::ScratchDir folder;
    DrawJob job;
    Page page;
    std::string version = "1.0";
    double x = 5.0;  // where the line is

    Input() {
        WriteFile(folder / "r.rules", kRules);
        for (const char* name : {"symbols", "notes", "project"}) WriteFile(folder / name, name);
        job.library.symbols = (folder / "symbols").string();
        job.library.notes = (folder / "notes").string();
        job.library.project = (folder / "project").string();
        page.sheet = Box{0.0, 0.0, 100.0, 100.0};
    }
    std::string Hash() const {
        const Rules rules = ReadRules(folder / "r.rules");
        FeatureStore store(rules);
        Feature line;
        line.shapes = {{GeometryKind::line, {{{x, 20.0}, {5.0, 30.0}}}}};
        line.uses.emplace_back();
        line.uses.back().rule = &rules.rules.front();
        store.Add(store.AddLayer("f: lines", true), 1, line);
        store.Settle();
        return HashOfInput(job, rules, page, store, version);
    }
};

struct Change {
    const char* name;
    std::function<void(Input&)> make;
};
void PrintTo(const Change& change, std::ostream* out) {
    *out << change.name;
}

class InputHash : public testing::TestWithParam<Change> {};

TEST_P(InputHash, IsAnotherOneAfterAChangeOfIt) {
    Input input;
    const std::string before = input.Hash();
    EXPECT_EQ(before.size(), 64u);
    EXPECT_EQ(before, input.Hash());
    GetParam().make(input);
    EXPECT_NE(before, input.Hash());
}

INSTANTIATE_TEST_SUITE_P(
    Drawing, InputHash,
    testing::Values(
        Change{"feature", [](Input& in) { in.x = 6.0; }},
        // Neither the settings of a rule nor the rules that took nothing are kept with the features.
        Change{"setting_of_a_rule",
               [](Input& in) { WriteFile(in.folder / "r.rules", "[* : line]\n* -> layer 251, symbol 250\n"); }},
        Change{
            "rule_that_takes_nothing",
            [](Input& in) { WriteFile(in.folder / "r.rules", std::string(kRules) + "[* : area]\n* -> symbol 200\n"); }},
        Change{"symbols", [](Input& in) { WriteFile(in.folder / "symbols", "symbolt"); }},
        Change{"notes", [](Input& in) { WriteFile(in.folder / "notes", "note"); }},
        Change{"project", [](Input& in) { WriteFile(in.folder / "project", ""); }},
        Change{"symbols_that_are_gone", [](Input& in) { std::filesystem::remove(in.folder / "symbols"); }},
        Change{"version_of_the_program", [](Input& in) { in.version = "1.1"; }},
        Change{"scale", [](Input& in) { in.page.scale = 500.0; }},
        Change{"side_of_the_sheet", [](Input& in) { in.page.sheet.x2 = 100.001; }},
        Change{"rotation", [](Input& in) { in.page.rotation = 1.0; }},
        Change{"left_margin", [](Input& in) { in.page.margins.left += 1.0; }},
        Change{"right_margin", [](Input& in) { in.page.margins.right += 1.0; }},
        Change{"top_margin", [](Input& in) { in.page.margins.top += 1.0; }},
        Change{"bottom_margin", [](Input& in) { in.page.margins.bottom += 1.0; }},
        Change{"dots_an_inch", [](Input& in) { in.job.sink.dpi = 301.0; }},
        Change{"frame", [](Input& in) { in.page.frame = !in.page.frame; }},
        Change{"black_and_white", [](Input& in) { in.job.sink.monochrome = !in.job.sink.monochrome; }},
        Change{"code_page_of_texts", [](Input& in) { in.job.sink.utf8 = !in.job.sink.utf8; }},
        Change{"thickness", [](Input& in) { in.job.sink.thickness = !in.job.sink.thickness; }},
        Change{"area_that_is_clipped_to",
               [](Input& in) {
                   in.page.clip = {{{0.0, 9.0, 9.0}, {0.0, 0.0, 9.0}}};
               }},
        Change{"number_in_the_margins", [](Input& in) { in.job.texts.number = "1-1"; }},
        Change{"secrecy_in_the_margins", [](Input& in) { in.job.texts.secrecy = "none"; }},
        Change{"sheet_beside_it", [](Input& in) { in.job.texts.neighbours[3] = "1-2"; }},
        Change{"width_of_the_outer_frame", [](Input& in) { in.job.texts.outerWidth += 0.1; }},
        Change{"diagram_of_neighbours", [](Input& in) { in.job.texts.adjoining = !in.job.texts.adjoining; }},
        Change{"scale_bar", [](Input& in) { in.job.texts.barScale = !in.job.texts.barScale; }},
        Change{"legend", [](Input& in) { in.job.legend = !in.job.legend; }},
        Change{"title_of_the_file", [](Input& in) { in.job.sink.title = "another"; }},
        Change{"rule_that_is_hidden", [](Input& in) { in.job.hiddenRules = {"r.rules:2"}; }},
        Change{"blocks_as_they_were_copied",
               [](Input& in) { in.job.library.blocksAsCopied = !in.job.library.blocksAsCopied; }},
        Change{"unit_in_the_margins", [](Input& in) { in.job.texts.unit = "another"; }},
        Change{"layer_that_is_hidden", [](Input& in) { in.job.hiddenLayers = {"f: lines"}; }},
        Change{"symbols_as_blocks", [](Input& in) { in.job.library.symbolsAs = "blocks"; }}),
    [](const auto& info) { return std::string(info.param.name); });

}  // namespace
