#include <cstring>
#include <filesystem>

#include "config/texts.h"
#include "runtime/text/numbers.h"
#include "tests/config/config_test.h"
#include "tests/support/random.h"

using testing::HasSubstr;
using testing::IsEmpty;
using testing::StrEq;
using zm::numbers::Text;
using zm::test::ReadFile;

namespace {

using Layers = ConfigTest;

LayerCol* Table() {
    LayerCol* table = nullptr;
    int* count = nullptr;
    Get_CengCi(table, count);
    return table;
}

int& Count() {
    LayerCol* table = nullptr;
    int* count = nullptr;
    Get_CengCi(table, count);
    return *count;
}

std::string Shown(const LayerCol& layer) {
    return Text("%s %d %d %d %d", layer.name, layer.start, layer.end, layer.color, layer.show);
}

}  // namespace

TEST_F(Layers, TextsAreTheirReadableForms) {
    for (const auto& text : zm::config::texts::kAll) EXPECT_EQ(zm::gbk::ToUtf8(text.gbk), text.readable);
}

TEST_F(Layers, AProjectWithoutLayersHasTheOneDefaultLayer) {
    for (const char* text : {"", "[Other]\nLayers=3\n", "[LayerSet]\n", "[LayerSet]\nLayers=0\nLayer1=A 1 2 3 1\n",
                             "[LayerSet]\nLayers=-1\n", "[LayerSet]\nLayers=text\n"}) {
        PutProject(text);
        ReadCengCi();
        EXPECT_EQ(Count(), 1) << text;
        EXPECT_EQ(Shown(Table()[0]), Gbk("地物") + " 100 999 1 1") << text;
    }
    EXPECT_THAT(host.boxes, IsEmpty());
}

TEST_F(Layers, DefaultLayerHoldsItsEndsAndNothingBeyond) {
    ReadCengCi();
    EXPECT_EQ(GetColorNo1(99), 0);
    EXPECT_EQ(GetLayerName(99), nullptr);
    EXPECT_EQ(GetRec(99), 0);
    for (const int code : {100, 500, 999}) {
        EXPECT_EQ(GetColorNo1(code), 1);
        EXPECT_EQ(GetLayerName(code), Gbk("地物"));
        EXPECT_EQ(GetRec(code), 1);
    }
    EXPECT_EQ(GetColorNo1(1000), 0);
}

TEST_F(Layers, LookupsBeforeAnyReadFindNothing) {
    EXPECT_EQ(GetColorNo1(100), 0);
    EXPECT_EQ(GetRec(100), 0);
    EXPECT_EQ(GetLayerName(100), nullptr);
    EXPECT_EQ(Table(), nullptr);
    EXPECT_EQ(Count(), 0);
}

TEST_F(Layers, FieldsAreParsedBehindAnyWhiteSpaceAndSignsJoinedNumbersToo) {
    PutProject("[LayerSet]\nLayers=2\nLayer1=AAA   100\t+199   -3  0 trailing\nLayer2=B 1 2 3 1\n");
    ReadCengCi();
    EXPECT_EQ(Shown(Table()[0]), "AAA 100 199 -3 0");
    EXPECT_EQ(Shown(Table()[1]), "B 1 2 3 1");
    EXPECT_THAT(host.boxes, IsEmpty());
}

TEST_F(Layers, ColourBeyondThePaletteIsRepairedInTheTableForGood) {
    PutProject("[LayerSet]\nLayers=3\nLayer1=AAA 100 199 12 1\nLayer2=BBB 200 299 -1 1\nLayer3=CCC 300 399 9 1\n");
    ReadCengCi();
    EXPECT_EQ(Table()[0].color, 12);
    EXPECT_EQ(GetColorNo1(150), 1);
    EXPECT_EQ(Table()[0].color, 1);
    EXPECT_EQ(GetColorNo1(250), 1) << "a negative number is above 9 without a sign";
    EXPECT_EQ(GetColorNo1(350), 9);
    WriteCengCi();
    EXPECT_THAT(ReadFile(dirs.Project("map.ini")), HasSubstr("Layer1=AAA 100 199 1 1"));
}

TEST_F(Layers, TheFirstOfOverlappingLayersAnswers) {
    PutProject("[LayerSet]\nLayers=2\nLayer1=ONE 100 199 3 0\nLayer2=TWO 100 299 4 1\n");
    ReadCengCi();
    EXPECT_THAT(GetLayerName(150), StrEq("ONE"));
    EXPECT_EQ(GetRec(150), 0);
    EXPECT_THAT(GetLayerName(200), StrEq("TWO"));
}

TEST_F(Layers, ReadThenWriteGivesTheSameLinesWithSingleBlanks) {
    PutProject("[LayerSet]\r\nLayers=2\r\nLayer1=AAA   100\t199  3 1\r\nLayer2=" + Gbk("道路") + " 200 299 2 0\r\n");
    ReadCengCi();
    WriteCengCi();
    const std::string written = ReadFile(dirs.Project("map.ini"));
    EXPECT_EQ(written,
              "[LayerSet]\r\nLayers=2\r\nLayer1=AAA 100 199 3 1\r\nLayer2=" + Gbk("道路") + " 200 299 2 0\r\n");
    ReadCengCi();
    WriteCengCi();
    EXPECT_EQ(ReadFile(dirs.Project("map.ini")), written);
}

TEST_F(Layers, LinesOfHigherNumbersStayInTheFileUnread) {
    PutProject("[LayerSet]\r\nLayers=3\r\nLayer1=AAA 1 1 1 1\r\nLayer2=BBB 2 2 2 1\r\nLayer3=CCC 3 3 3 1\r\n");
    ReadCengCi();
    Count() = 1;
    WriteCengCi();
    EXPECT_THAT(ReadFile(dirs.Project("map.ini")), HasSubstr("Layers=1\r\n"));
    EXPECT_THAT(ReadFile(dirs.Project("map.ini")), HasSubstr("Layer3=CCC 3 3 3 1"));
    ReadCengCi();
    EXPECT_EQ(Count(), 1);
}

TEST_F(Layers, MoreThan1000AreReadAndSavedAs1000) {
    std::string text = "[LayerSet]\nLayers=5000\n";
    for (int i = 1; i <= 1003; ++i) text += Text("Layer%d=L%d %d %d 1 1\n", i, i, i, i);
    PutProject(text);
    ReadCengCi();
    EXPECT_EQ(Count(), 1000);
    EXPECT_THAT(GetLayerName(1000), StrEq("L1000"));
    EXPECT_EQ(GetLayerName(1001), nullptr);
    Count() = 4000;
    EXPECT_EQ(GetLayerName(1001), nullptr) << "a count beyond the table is not followed";
    WriteCengCi();
    EXPECT_EQ(Count(), 1000);
    EXPECT_THAT(ReadFile(dirs.Project("map.ini")), HasSubstr("Layers=1000\n"));
    EXPECT_THAT(host.boxes, IsEmpty());
}

TEST_F(Layers, AShortLineIsAnInternalErrorAndYieldsZeros) {
    PutProject("[LayerSet]\nLayers=2\nLayer1=AB\nLayer2=TWO 100 299 4 1\n");
    ReadCengCi();
    ASSERT_EQ(host.boxes.size(), 1u);
    EXPECT_EQ(host.boxes[0].text, Gbk("内部错误：CengCi Ini err\n在：ReadCengCi的tqapp1\n结束程序运行吗？"));
    EXPECT_EQ(host.boxes[0].type, 0x14u);
    EXPECT_EQ(Shown(Table()[0]), "AB 0 0 0 0");
    EXPECT_THAT(GetLayerName(150), StrEq("TWO"));
}

TEST_F(Layers, ALineOfThreeBytesIsShortAndOneOfFourIsNot) {
    PutProject("[LayerSet]\nLayers=2\nLayer1=A 1\nLayer2=TWO 100 299 4 1\n");
    ReadCengCi();
    ASSERT_EQ(host.boxes.size(), 1u);
    EXPECT_THAT(host.boxes[0].text, HasSubstr(Gbk("内部错误")));
    EXPECT_EQ(Shown(Table()[0]), "A 1 0 0 0");
    host.boxes.clear();
    PutProject("[LayerSet]\nLayers=2\nLayer1=A 12\nLayer2=TWO 100 299 4 1\n");
    ReadCengCi();
    ASSERT_EQ(host.boxes.size(), 1u);
    EXPECT_THAT(host.boxes[0].text, HasSubstr("map.ini: Layer1=A 12"));
}

TEST_F(Layers, AShortLineAnsweredYesEndsTheProcess) {
    PutProject("[LayerSet]\nLayers=1\n");
    host.answers = {IDYES};
    try {
        ReadCengCi();
        FAIL() << "the process went on";
    } catch (const zm::test::ProcessEnded& end) {
        EXPECT_EQ(end.status, 13);
    }
}

TEST_F(Layers, ALineThatDoesNotParseYieldsZerosAndOneMessageThatNamesFileAndLine) {
    PutProject("[LayerSet]\nLayers=3\nLayer1=two words 1 2 3\nLayer2=NAME 5 x\nLayer3=OK 1 2 3 1\n");
    ReadCengCi();
    EXPECT_EQ(Shown(Table()[0]), "two 0 0 0 0");
    EXPECT_EQ(Shown(Table()[1]), "NAME 5 0 0 0");
    EXPECT_EQ(Shown(Table()[2]), "OK 1 2 3 1");
    ASSERT_EQ(host.boxes.size(), 1u);
    EXPECT_THAT(host.boxes[0].text, HasSubstr("map.ini: Layer1=two words 1 2 3"));
    EXPECT_THAT(host.boxes[0].text, HasSubstr("2 lines are wrong"));
}

TEST_F(Layers, ANameBeyondItsFieldIsCutBetweenCharactersAndReported) {
    PutProject("[LayerSet]\nLayers=2\nLayer1=ABCDEFGHIJKLMNOP 1 2 3 1\nLayer2=" + Gbk("地物地物地物地物") +
               " 5 6 3 1\n");
    ReadCengCi();
    EXPECT_EQ(Shown(Table()[0]), "ABCDEFGHIJK 1 2 3 1");
    EXPECT_EQ(Shown(Table()[1]), Gbk("地物地物地") + " 5 6 3 1") << "eleven bytes hold five characters";
    EXPECT_EQ(host.boxes.size(), 1u);
}

TEST_F(Layers, ALineIsReadTo79Bytes) {
    PutProject("[LayerSet]\nLayers=1\nLayer1=A " + std::string(70, ' ') + "1 2 3 1\n");
    ReadCengCi();
    EXPECT_EQ(Shown(Table()[0]), "A 1 2 3 1");
    PutProject("[LayerSet]\nLayers=1\nLayer1=A " + std::string(71, ' ') + "1 2 3 4\n");
    ReadCengCi();
    EXPECT_EQ(Shown(Table()[0]), "A 1 2 3 0") << "the eightieth byte is the end byte";
}

TEST_F(Layers, AChangeThroughTheTableIsSeenAtOnce) {
    PutProject("[LayerSet]\nLayers=1\nLayer1=ONE 100 199 3 1\n");
    ReadCengCi();
    EXPECT_THAT(GetLayerName(150), StrEq("ONE"));
    LayerCol* table = Table();
    table[0].start = 160;
    EXPECT_EQ(GetLayerName(150), nullptr);
    table[1] = LayerCol{"TWO", 140, 155, 5, 1};
    EXPECT_EQ(GetLayerName(150), nullptr);
    Count() = 2;
    EXPECT_THAT(GetLayerName(150), StrEq("TWO"));
    ReadCengCi();
    EXPECT_EQ(Table(), table) << "a second read refills the same table";
    EXPECT_THAT(GetLayerName(150), StrEq("ONE"));
    table[0].end = 120;
    EXPECT_EQ(GetLayerName(150), nullptr) << "and the table is still in the caller's hands";
}

TEST_F(Layers, ANameThatFillsItsFieldIsEndedWhereItIsHandedOut) {
    ReadCengCi();
    LayerCol* table = Table();
    std::memset(table[0].name, 'x', sizeof table[0].name);
    EXPECT_EQ(std::strlen(GetLayerName(500)), 11u);
    std::memset(table[0].name, 'x', sizeof table[0].name);
    WriteCengCi();
    EXPECT_THAT(ReadFile(dirs.Project("map.ini")), HasSubstr("Layer1=xxxxxxxxxxxx 100 999 1 1"));
}

TEST_F(Layers, AfterDeletionLookupsFindNothingAndAReadStartsAgain) {
    ReadCengCi();
    DeleteCengCi8Dlg();
    EXPECT_EQ(GetColorNo1(500), 0);
    EXPECT_EQ(GetRec(500), 0);
    EXPECT_EQ(GetLayerName(500), nullptr);
    EXPECT_EQ(GetPenWidth(500), 0);
    EXPECT_EQ(GetColorNo(500), 0ul);
    EXPECT_EQ(Table(), nullptr);
    DeleteCengCi8Dlg();
    ReadCengCi();
    EXPECT_EQ(GetColorNo1(500), 1);
}

TEST_F(Layers, WithoutATableNothingIsSaved) {
    PutProject("[LayerSet]\r\nLayers=1\r\nLayer1=AAA 1 1 1 1\r\n");
    ReadCengCi();
    DeleteCengCi8Dlg();
    WriteCengCi();
    EXPECT_EQ(ReadFile(dirs.Project("map.ini")), "[LayerSet]\r\nLayers=1\r\nLayer1=AAA 1 1 1 1\r\n");
}

TEST_F(Layers, AFileThatCannotBeWrittenIsToldWithItsPath) {
    ReadCengCi();
    std::filesystem::create_directory(dirs.Project("map.ini"));
    WriteCengCi();
    ASSERT_EQ(host.boxes.size(), 1u);
    EXPECT_THAT(host.boxes[0].text, HasSubstr("map.ini could not be written"));
}

TEST_F(Layers, WithoutMemoryTheProcessEndsWithStatus13) {
    for (const int failing : {1, 2}) {
        static int left = 0;
        left = failing;
        zm::config::state().allocate = [](std::size_t size) -> void* {
            return --left == 0 ? nullptr : std::malloc(size);
        };
        host.boxes.clear();
        try {
            ReadCengCi();
            FAIL() << "the process went on";
        } catch (const zm::test::ProcessEnded& end) {
            EXPECT_EQ(end.status, 13);
        }
        ASSERT_EQ(host.boxes.size(), 1u);
        EXPECT_EQ(host.boxes[0].text, "layer space err");
        EXPECT_EQ(GetLayerName(500), nullptr);
    }
}

TEST_F(Layers, ReadAndWriteLeaveTheProjectAtItsIniFile) {
    std::string ext = "dat";
    _LFSetExt(ext.data());
    ReadCengCi();
    std::string key = "Layers";
    std::string section = "LayerSet";
    WriteCengCi();
    EXPECT_EQ(_LFGetI(0, key.data(), section.data()), 1);
    EXPECT_TRUE(std::filesystem::exists(dirs.Project("map.ini")));
    EXPECT_FALSE(std::filesystem::exists(dirs.Project("map.dat")));
}

TEST_F(Layers, TheIndexAnswersAsTheSearchDoes) {
    ZM_TRACE_SEED();
    zm::test::Random random(3);
    for (int round = 0; round < 20; ++round) {
        const int count = random.Int(1, 40);
        std::string text = Text("[LayerSet]\nLayers=%d\n", count);
        for (int i = 1; i <= count; ++i) {
            const int start = random.Int(-50, 1050);
            text +=
                Text("Layer%d=L%d %d %d %d %d\n", i, i, start, start + random.Int(-20, 200), random.Int(0, 9), i % 2);
        }
        PutProject(text);
        zm::config::ResetState();
        ReadCengCi();
        ASSERT_FALSE(zm::config::state().layerOfCode.empty());
        std::vector<std::string> byIndex;
        for (int code = -60; code < 1300; ++code) {
            const char* name = GetLayerName(code);
            byIndex.push_back(Text("%s %d %d", name != nullptr ? name : "-", GetColorNo1(code), GetRec(code)));
        }
        Table();  // now that somebody has the table, it is searched
        ASSERT_TRUE(zm::config::state().layerOfCode.empty());
        for (int code = -60; code < 1300; ++code) {
            const char* name = GetLayerName(code);
            EXPECT_EQ(byIndex[static_cast<std::size_t>(code + 60)],
                      Text("%s %d %d", name != nullptr ? name : "-", GetColorNo1(code), GetRec(code)));
        }
    }
}

TEST_F(Layers, NamesThatWouldBeReadBackAsOthersAreToldAndNoLayerIsLost) {
    const struct {
        const char* name;
        const char* line;
    } kNames[] = {{"A B", "Layer1=A B 1 2 3 1"},
                  {"A\tB", "Layer1=A\tB 1 2 3 1"},
                  {"A\nB", "Layer1=A_B 1 2 3 1"},
                  {"A\r\nB", "Layer1=A__B 1 2 3 1"}};
    for (const auto& c : kNames) {
        PutProject("");
        ReadCengCi();
        Table()[0] = LayerCol{{}, 1, 2, 3, 1};
        std::strcpy(Table()[0].name, c.name);
        Table()[1] = LayerCol{"Second", 3, 4, 5, 1};
        Count() = 2;
        host.boxes.clear();
        WriteCengCi();
        const std::string file = ReadFile(dirs.Project("map.ini"));
        EXPECT_THAT(file, HasSubstr(c.line));
        EXPECT_THAT(file, HasSubstr("Layer2=Second 3 4 5 1"));
        ASSERT_EQ(host.boxes.size(), 1u) << c.line;
        EXPECT_THAT(host.boxes[0].text, HasSubstr("map.ini: Layer1="));
    }
}

TEST_F(Layers, AnEmptyNameIsReported) {
    PutProject("");
    ReadCengCi();
    Table()[0] = LayerCol{{}, 1, 2, 3, 1};
    WriteCengCi();
    ASSERT_EQ(host.boxes.size(), 1u);
    EXPECT_THAT(host.boxes[0].text, HasSubstr("Layer1="));
}
