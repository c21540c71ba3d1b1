// The library's own symbol file: complete, clean, and every symbol draws.
#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <algorithm>
#include <fstream>
#include <map>
#include <set>

#include "own_library.h"
#include "runtime/text/numbers.h"
#include "tests/support/scratch.h"
#include "tests/support/test_host.h"
#include "tools/symbols/ornament_table.h"
#include "tools/symbols/picture.h"
#include "tools/symbols/symbols.h"
#include "zenromath/draw.h"
#include "zenromath/symbol.h"

namespace zm::tool::symbols {
namespace {

class OwnLibrary : public testing::Test {
 protected:
    static const std::vector<Symbol>& Symbols() {
        static const std::vector<Symbol> symbols = ReadSymbols(test::LibraryPath(test::OwnLibrary()).c_str());
        return symbols;
    }
    static const Symbol* Find(int code) {
        const auto found =
            std::find_if(Symbols().begin(), Symbols().end(), [code](const Symbol& s) { return s.code == code; });
        return found == Symbols().end() ? nullptr : &*found;
    }
    static std::string KindOf(int code) { return Find(code) == nullptr ? "none" : Find(code)->kind; }
    static void Load() { ASSERT_EQ(TsymbolInit(test::LibraryPath(test::OwnLibrary()).c_str()), 1); }
};

TEST_F(OwnLibrary, HasAsManyCodesAsItsDocuments) {
    EXPECT_EQ(Symbols().size(), 516u);
}

TEST_F(OwnLibrary, LintFindsNothing) {
    for (const Finding& finding : Lint(test::LibraryPath(test::OwnLibrary()).c_str()))
        ADD_FAILURE() << FindingText("symbol.dat", finding);
}

TEST_F(OwnLibrary, LoadsWithoutAMessage) {
    test::TestHost host;
    Load();
    EXPECT_TRUE(host.boxes.empty()) << host.boxes.front().text;
}

TEST_F(OwnLibrary, EveryCodeHasAChineseNoteOfItsOwnKind) {
    std::set<std::pair<std::string, std::string>> seen;
    for (const Symbol& symbol : Symbols()) {
        EXPECT_FALSE(symbol.note.empty()) << symbol.code;
        EXPECT_TRUE(std::any_of(symbol.note.begin(), symbol.note.end(), [](char c) { return (c & 0x80) != 0; }))
            << symbol.code << " " << symbol.note;
        EXPECT_EQ(symbol.note.find("\xEF\xBF\xBD"), std::string::npos) << symbol.code;
        EXPECT_TRUE(seen.insert({symbol.kind, symbol.note}).second) << "twice: " << symbol.code << " " << symbol.note;
    }
}

TEST_F(OwnLibrary, HasWhatTheOrnamentsLeanOn) {
    for (const int code : {834, 221, 337, 981}) EXPECT_EQ(KindOf(code), "LC") << code;
    for (const int code : {3, 16, 42, 54, 90, 91, 93, 95, 984}) EXPECT_EQ(KindOf(code), "G") << code;
    EXPECT_EQ(KindOf(824), "H");  // the hatch that no zoom thins
    EXPECT_EQ(KindOf(830), "G");  // what a grid entry places that names no code
}

TEST_F(OwnLibrary, HasACodeForEachOrnamentThatDraws) {
    for (const Ornament& ornament : Ornaments()) {
        const Symbol* symbol = Find(700 + ornament.number);
        ASSERT_EQ(symbol != nullptr, OrnamentDraws(ornament.number)) << ornament.number;
        if (symbol == nullptr) continue;
        EXPECT_EQ(symbol->kind, "Y");
        EXPECT_EQ(symbol->number, ornament.number);
    }
}

TEST_F(OwnLibrary, EveryGraphicSymbolDrawsWithinItsSize) {
    Load();
    for (const Symbol& symbol : Symbols()) {
        if (symbol.kind != "G") continue;
        const Picture picture = TakePicture(1000.0, 0.15, [&] { EXPECT_EQ(insert(0, 0, 0, symbol.code), 1); });
        EXPECT_EQ(picture.message, "") << symbol.code;
        EXPECT_GT(picture.width + picture.height, 0.0) << symbol.code;
        // The pooled size is at least the larger extent; 0.2 is the pen and the rounding to pixels.
        EXPECT_LE(std::max(picture.width, picture.height), symbol.size + 0.2) << symbol.code;
        EXPECT_LE(symbol.size, 10.0) << symbol.code;
    }
}

TEST_F(OwnLibrary, EveryLineAndAreaDrawsAtEveryScale) {
    Load();
    for (const double scale : {500.0, 1000.0, 2000.0})
        for (const Symbol& symbol : Symbols()) {
            if (symbol.kind == "G" || symbol.kind == "Y") continue;
            const Picture picture = TakePicture(scale, 0.15, [&] {
                std::vector<double> x(4000), y(4000);
                const double mm = scale / 1000.0;
                const double xs[] = {-25, 25, 25, -25, -25}, ys[] = {-15, -15, 15, 15, -15};
                for (std::size_t i = 0; i < 5; ++i) {
                    x[i] = xs[i] * mm;
                    y[i] = ys[i] * mm;
                }
                EXPECT_EQ(PROCESSALL(5, x.data(), y.data(), 1, symbol.code), 1) << symbol.code;
            });
            EXPECT_EQ(picture.message, "") << symbol.code;
            // The figure itself is 50 by 30 on paper at every scale; a pattern may lose up to a gap at its ends.
            EXPECT_NEAR(picture.width, 50.0, 9.0) << symbol.code << " at " << scale;
            EXPECT_NEAR(picture.height, 30.0, 9.0) << symbol.code << " at " << scale;
        }
}

TEST_F(OwnLibrary, EveryOrnamentDrawsWithoutAMessage) {
    Load();
    for (const Ornament& ornament : Ornaments()) {
        const Picture picture = TakePicture(1000.0, 0.15, [&] {
            std::vector<double> x, y;
            for (const OrnamentPoint& p : ornament.example) {
                x.push_back(p.x);
                y.push_back(p.y);
            }
            EXPECT_EQ(drawcode(ornament.number, 0, static_cast<int>(x.size()), x.data(), y.data(), 1000.0), 1);
        });
        EXPECT_EQ(picture.message, "") << ornament.number;
        EXPECT_EQ(picture.body.empty(), !OrnamentDraws(ornament.number)) << ornament.number;
    }
}

// docs/symbol/codes.md, row by row.
TEST_F(OwnLibrary, CodesPageAgreesWithTheFile) {
    std::ifstream in(test::SourceDir() / "docs" / "symbol" / "codes.md");
    std::map<int, std::string> rows;
    for (std::string line; std::getline(in, line);) {
        int code = 0;
        if (line.compare(0, 2, "| ") != 0 || (code = std::atoi(line.c_str() + 2)) == 0) continue;
        if (line[2 + std::to_string(code).size()] != ' ') continue;  // a range
        if (line.find(" porch ") != std::string::npos || std::count(line.begin(), line.end(), '|') != 6) continue;
        rows[code] = line;
    }
    EXPECT_EQ(rows.size(), Symbols().size());
    for (const Symbol& symbol : Symbols()) {
        const std::string& row = rows[symbol.code];
        const std::string begin = "| " + std::to_string(symbol.code) + " | " + symbol.note + " | ";
        const std::string end = " | " + symbol.kind + " | " +
                                (symbol.kind == "G" ? numbers::Text("%.2f", symbol.size) : std::string()) + " |";
        EXPECT_THAT(row, testing::StartsWith(begin));
        EXPECT_THAT(row, testing::EndsWith(end));
    }
}

}  // namespace
}  // namespace zm::tool::symbols
