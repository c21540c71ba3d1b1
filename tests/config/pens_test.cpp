#include "config/pens.h"

#include <cstring>
#include <filesystem>

#include "runtime/text/numbers.h"
#include "tests/config/config_test.h"

using testing::ElementsAre;
using zm::numbers::Text;
using zm::test::ReadFile;

namespace {

using Pens = ConfigTest;
using Palette = ConfigTest;

std::vector<unsigned long> Colors() {
    unsigned long* palette = nullptr;
    const int count = Get_SysColor(palette);
    return {palette, palette + count};
}

}  // namespace

TEST_F(Pens, CodesOutside1To999HaveNoWidthWhateverTheDefault) {
    PutWidths("[PenWidth]\nDefault=30\n0=7\n1000=9\n");
    ReadCengCi();
    EXPECT_EQ(GetPenWidth(0), 0);
    EXPECT_EQ(GetPenWidth(1000), 0);
    EXPECT_EQ(GetPenWidth(-1), 0);
    EXPECT_EQ(GetPenWidth(2147483647), 0);
    EXPECT_EQ(GetPenWidth(1), 30);
    EXPECT_EQ(GetPenWidth(999), 30);
}

TEST_F(Pens, WidthOfACodeOrTheDefault) {
    for (const auto& [line, width] : std::vector<std::pair<const char*, int>>{{"", 30},
                                                                              {"5=254\n", 254},
                                                                              {"5=255\n", 30},
                                                                              {"5=300\n", 44},
                                                                              {"5=0\n", 0},
                                                                              {"5=text\n", 0},
                                                                              {"5=-1\n", 30}}) {
        PutWidths(std::string("[PenWidth]\nDefault=30\n") + line);
        ReadCengCi();
        EXPECT_EQ(GetPenWidth(5), width) << line;
    }
}

TEST_F(Pens, DefaultOf255OrMoreIsNone) {
    for (const auto& [value, width] :
         std::vector<std::pair<const char*, int>>{{"254", 254}, {"255", 0}, {"256", 0}, {"-5", 0}, {"x", 0}}) {
        PutWidths(std::string("[PenWidth]\nDefault=") + value + "\n");
        ReadCengCi();
        EXPECT_EQ(GetPenWidth(5), width) << value;
    }
}

TEST_F(Pens, WithoutAFileAllWidthsAre0) {
    ReadCengCi();
    EXPECT_EQ(GetPenWidth(5), 0);
}

TEST_F(Pens, WithoutATableNothingIsReadOrWritten) {
    EXPECT_EQ(GetPenWidth(5), 0);
    EXPECT_EQ(zm::config::ReadPenWidth(), nullptr);
    EXPECT_FALSE(zm::config::WritePenWidth());
    EXPECT_FALSE(std::filesystem::exists(dirs.Module("neworv.ini")));
}

TEST_F(Pens, AreWrittenAnewBesideTheModule) {
    PutWidths("; widths\r\n[PenWidth]\r\nDefault=30\r\n5=20\r\n6=21\r\n[Other]\r\nk=v\r\n");
    ReadCengCi();
    std::uint8_t* widths = zm::config::ReadPenWidth();
    widths[5] = 255;
    widths[7] = 0;
    widths[999] = 254;
    EXPECT_TRUE(zm::config::WritePenWidth());
    EXPECT_EQ(ReadFile(dirs.Module("neworv.ini")),
              "; widths\r\n[PenWidth]\r\nDefault=30\r\n6=21\r\n7=0\r\n999=254\r\n[Other]\r\nk=v\r\n");
}

TEST_F(Pens, WrittenAndReadBackAreTheSame) {
    ReadCengCi();
    std::uint8_t* widths = zm::config::state().penWidths;
    for (int i = 0; i < 1000; ++i) widths[i] = static_cast<std::uint8_t>(i * 37);
    widths[0] = 12;
    std::uint8_t before[1000];
    std::memcpy(before, widths, sizeof before);
    EXPECT_TRUE(zm::config::WritePenWidth());
    const std::string bytes = ReadFile(dirs.Module("neworv.ini"));
    EXPECT_EQ(std::memcmp(before, zm::config::ReadPenWidth(), sizeof before), 0);
    EXPECT_TRUE(zm::config::WritePenWidth());
    EXPECT_EQ(ReadFile(dirs.Module("neworv.ini")), bytes);
}

TEST_F(Pens, AFileThatCannotBeWrittenIsReported) {
    ReadCengCi();
    std::filesystem::create_directory(dirs.Module("neworv.ini"));
    EXPECT_FALSE(zm::config::WritePenWidth());
}

// ---- Palette ----

TEST_F(Palette, StartsWithItsTenColours) {
    EXPECT_THAT(Colors(), ElementsAre(0x000000, 0x000000, 0x0000FF, 0x00FF00, 0xFF0000, 0x00FFFF, 0xFF00FF, 0xFFFF00,
                                      0x008080, 0x5C5CC0));
}

TEST_F(Palette, IsReadFromTheMachineDirectoryAndNotBesideTheModule) {
    PutWidths("[PenColor]\n1=9,9,9\n");
    PutColors("[PenColor]\n1=1,2,3\n");
    ReadColorSetting();
    EXPECT_EQ(Colors()[1], 0x030201u);
}

TEST_F(Palette, ReadingStopsAtTheFirstMissingColour) {
    PutColors("[PenColor]\n1=10,20,30\n3=1,2,3\n");
    ReadColorSetting();
    EXPECT_THAT(Colors(), ElementsAre(0x000000, 0x1E140A, 0x0000FF, 0x00FF00, 0xFF0000, 0x00FFFF, 0xFF00FF, 0xFFFF00,
                                      0x008080, 0x5C5CC0));
}

TEST_F(Palette, PartsThatDoNotParseAre0AndLargeOnesCarry) {
    PutColors("[PenColor]\n0=9,9,9\n1=300,20,30\n2=5\n3=7,8\n4=x\n5= 1, 2, 3\n6=,,\n7=-1,0,0\n8=0,0,70000\n");
    ReadColorSetting();
    const std::vector<unsigned long> colors = Colors();
    EXPECT_EQ(colors[0], 0u) << "entry 0 is never read";
    EXPECT_EQ(colors[1], 300u + 256 * 20 + 65536 * 30);
    EXPECT_EQ(colors[2], 5u);
    EXPECT_EQ(colors[3], 7u + 256 * 8);
    EXPECT_EQ(colors[4], 0u);
    EXPECT_EQ(colors[5], 0x030201u);
    EXPECT_EQ(colors[6], 0u);
    EXPECT_EQ(colors[7], 0xFFFFFFFFu) << "32 bits on every system";
    EXPECT_EQ(colors[8], 0x11700000u);
    EXPECT_EQ(colors[9], 0x5C5CC0u);
}

TEST_F(Palette, WritesTheLowBytesOfAllNine) {
    unsigned long* palette = nullptr;
    ASSERT_EQ(Get_SysColor(palette), 10);
    palette[0] = 0x112233;
    palette[1] = 0xFF030201;
    WriteColorSetting();
    EXPECT_EQ(ReadFile(dirs.Machine("neworv.ini")),
              "[PenColor]\r\n1=1,2,3\r\n2=255,0,0\r\n3=0,255,0\r\n4=0,0,255\r\n5=255,255,0\r\n6=255,0,255\r\n"
              "7=0,255,255\r\n8=128,128,0\r\n9=192,92,92\r\n");
    palette[1] = 0;
    ReadColorSetting();
    EXPECT_EQ(palette[1], 0x030201u);
}

TEST_F(Palette, ColourOfACodeIsThatOfItsLayerOrEntry0) {
    PutProject("[LayerSet]\nLayers=2\nLayer1=AAA 100 199 4 1\nLayer2=BBB 200 299 77 1\n");
    ReadCengCi();
    EXPECT_EQ(GetColorNo(150), 0xFF0000ul);
    EXPECT_EQ(GetColorNo(250), 0x000000ul) << "colour number 77 is 1";
    unsigned long* palette = nullptr;
    Get_SysColor(palette);
    palette[0] = 0x123456;
    EXPECT_EQ(GetColorNo(50), 0x123456ul);
}

TEST_F(Palette, AndWidthsAreReadWithTheLayers) {
    PutColors("[PenColor]\n1=1,2,3\n");
    PutWidths("[PenWidth]\nDefault=8\n");
    ReadCengCi();
    EXPECT_EQ(Colors()[1], 0x030201u);
    EXPECT_EQ(GetPenWidth(500), 8);
}
