// Logs of sheets and runs as other machines, full disks and editors leave them.
#include "tools/zenro/series/record.h"

#include <gtest/gtest.h>

#include "tests/support/scratch.h"
#include "tools/kit/exit_codes.h"
#include "tools/zenro/series/run.h"

namespace {

using namespace zm::tool;
using zm::test::WriteFile;

SheetRecord Drawn() {
    SheetRecord r;
    r.number = "A-1";
    r.run = 3;
    r.state = SheetState::done;
    r.features = 4711;
    r.files = R"([{"path":"a.dwg","bytes":5000000000}])";
    return r;
}

std::string Replaced(std::string text, const std::string& from, const std::string& to) {
    const std::size_t at = text.find(from);
    EXPECT_NE(at, std::string::npos) << from;
    return at == std::string::npos ? text : text.replace(at, from.size(), to);
}

TEST(SeriesRecord, ALineIsReadAsItWasWritten) {
    SheetRecord r;
    ASSERT_TRUE(FromLine(ToLine(Drawn()), r));
    EXPECT_EQ(ToLine(r), ToLine(Drawn()));
    EXPECT_EQ(r.run, 3);
    EXPECT_EQ(r.features, 4711);
}

TEST(SeriesRecord, AWholeNumberThatIsNoneMakesTheLineBroken) {
    const std::string line = ToLine(Drawn());
    for (const char* wrong : {"4.77778e+80", "-1e300", "2.5", "9223372036854775808", "true", "\"3\""}) {
        SheetRecord r;
        EXPECT_FALSE(FromLine(Replaced(line, "\"run\":3", std::string("\"run\":") + wrong), r)) << wrong;
        EXPECT_FALSE(FromLine(Replaced(line, "4711", wrong), r)) << wrong;
    }
    SheetRecord r;
    EXPECT_FALSE(FromLine(Replaced(line, "\"status\":0", "\"status\":4294967296"), r));
    EXPECT_TRUE(FromLine(Replaced(line, "\"run\":3", "\"run\":9223372036854775807"), r));
}

TEST(SeriesRecord, FilesAreReadOrThereAreNone) {
    const std::vector<SheetFile> files = FilesIn(Drawn().files);
    ASSERT_EQ(files.size(), 1u);
    EXPECT_EQ(files[0].path, "a.dwg");
    EXPECT_EQ(files[0].bytes, 5000000000u);
    for (const char* none : {"", "[]", "[", "{}", "3", "[3]", R"([{"path":"a.dwg"}])", R"([{"path":1,"bytes":2}])",
                             R"([{"path":"a.dwg","bytes":-1}])", R"([{"path":"a.dwg","bytes":1e80}])"})
        EXPECT_TRUE(FilesIn(none).empty()) << none;
}

TEST(SeriesRecord, ARunWhoseNumberIsNoneIsRefused) {
    const zm::test::ScratchDir folder;
    WriteFile(folder / "run-1.jsonl", R"({"run":7,"changed_only":false,"settings":{}})");
    EXPECT_EQ(ReadRun(folder / "run-1.jsonl").number, 7);
    WriteFile(folder / "run-1.jsonl", R"({"run":1e80,"changed_only":false,"settings":{}})");
    try {
        ReadRun(folder / "run-1.jsonl");
        ADD_FAILURE() << "was read";
    } catch (const Failure& failure) {
        EXPECT_EQ(failure.status, kNoInput);
        EXPECT_NE(std::string(failure.what()).find("run-1.jsonl: is no run of a series"), std::string::npos);
    }
}

}  // namespace
