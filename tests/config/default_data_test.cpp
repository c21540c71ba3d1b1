// The default data of the project: read by the library's own readers, without a message.
#include <filesystem>

#include "runtime/text/numbers.h"
#include "tests/config/config_test.h"

namespace fs = std::filesystem;
using testing::IsEmpty;
using testing::StrEq;

namespace {

class DefaultData : public ConfigTest {
 protected:
    void Copy(const char* name, const fs::path& to) { fs::copy_file(fs::path(ZM_DATA_DIR) / name, to); }
};

}  // namespace

TEST_F(DefaultData, LayersCoverTheCodesOfTheSymbolLibraryWithoutOverlap) {
    Copy("project.ini", dirs.Project("map.ini"));
    ReadCengCi();
    EXPECT_THAT(host.boxes, IsEmpty());
    LayerCol* table = nullptr;
    int* count = nullptr;
    Get_CengCi(table, count);
    EXPECT_GE(*count, 20);
    int last = 0;
    for (int i = 0; i < *count; ++i) {
        EXPECT_LE(table[i].start, table[i].end);
        EXPECT_GT(table[i].start, last) << table[i].name;
        last = table[i].end;
        EXPECT_TRUE(table[i].color >= 1 && table[i].color <= 9);
    }
    for (const int code : {1,   20,  40,  66,  90,  100, 140, 170, 200, 230, 300, 330, 360,
                           380, 381, 399, 500, 530, 580, 701, 739, 800, 849, 900, 984})
        EXPECT_NE(GetLayerName(code), nullptr) << code;
    EXPECT_EQ(GetLayerName(300), Gbk("水系"));
}

// Water blue, plants green, natural relief brown, all else black.
TEST_F(DefaultData, EachCodeHasTheColourOfItsClass) {
    constexpr int kBlack = 1, kGreen = 3, kBlue = 4, kBrown = 9;
    Copy("project.ini", dirs.Project("map.ini"));
    ReadCengCi();
    LayerCol* table = nullptr;
    int* count = nullptr;
    Get_CengCi(table, count);
    const auto colour = [&](int code) {
        for (int i = 0; i < *count; ++i)
            if (table[i].start <= code && code <= table[i].end) return static_cast<int>(table[i].color);
        return 0;
    };
    for (const int code : {20, 28, 129, 300, 304, 317, 319, 500, 503, 508}) EXPECT_EQ(colour(code), kBlue) << code;
    for (const int code : {140, 210, 213, 259, 402, 530, 557, 559}) EXPECT_EQ(colour(code), kGreen) << code;
    for (const int code : {171, 306, 312, 313, 380, 385, 389, 504, 507, 550, 553, 560})
        EXPECT_EQ(colour(code), kBrown) << code;
    for (const int code : {1, 27, 31, 38, 107, 190, 200, 208, 250, 260, 309, 318, 340, 360, 386, 510, 558})
        EXPECT_EQ(colour(code), kBlack) << code;
    // One name has one colour, since a drawing's layers go by their names.
    for (int i = 0; i < *count; ++i)
        for (int k = 0; k < i; ++k) {
            const bool alike = std::string(table[i].name) == table[k].name;
            EXPECT_TRUE(!alike || table[i].color == table[k].color) << i;
        }
}

TEST_F(DefaultData, PenWidthsAndColoursAreThoseOfTheFile) {
    Copy("neworv.ini", dirs.Module("neworv.ini"));
    ReadCengCi();
    EXPECT_EQ(GetPenWidth(500), 15) << "the default";
    EXPECT_EQ(GetPenWidth(381), 30) << "index contours are wider";
    EXPECT_EQ(GetPenWidth(380), 15);
}

TEST_F(DefaultData, NoteClassesHaveFontsOfFacesThatExist) {
    Copy("Orvnote.cod", dirs.Module("Orvnote.cod"));
    TqNoteLayBase notes;
    EXPECT_THAT(host.boxes, IsEmpty());
    EXPECT_EQ(GetTqNoteLayBasePt(), &notes);
    EXPECT_EQ(notes.GetCount(), 16);
    for (const char code : {'0', '@', '#', 'A', 'C'}) {
        EXPECT_EQ(notes.GetNoteLay(code)->code, code);
        ASSERT_NE(notes.FontInfo(code), nullptr);
        EXPECT_GT(notes.CharH(code), 0);
    }
    EXPECT_THAT(notes.FontInfo('A')->screenFont, StrEq("WenQuanYi Zen Hei"));
    EXPECT_EQ(notes.LayerName('@'), Gbk("高程"));
}

TEST_F(DefaultData, IsReadAndWrittenAgainByteForByte) {
    Copy("project.ini", dirs.Project("map.ini"));
    Copy("neworv.ini", dirs.Module("neworv.ini"));
    Copy("Orvnote.cod", dirs.Module("Orvnote.cod"));
    ReadCengCi();
    WriteCengCi();
    EXPECT_EQ(zm::test::ReadFile(dirs.Project("map.ini")), zm::test::ReadFile(fs::path(ZM_DATA_DIR) / "project.ini"));
    TqNoteLayBase notes;
    EXPECT_EQ(notes.WriteNoteClassInfo(), 1);
    EXPECT_EQ(notes.WriteNoteFontInfo(), 1);
    EXPECT_EQ(zm::test::ReadFile(dirs.Module("Orvnote.cod")),
              zm::test::ReadFile(fs::path(ZM_DATA_DIR) / "Orvnote.cod"));
}
