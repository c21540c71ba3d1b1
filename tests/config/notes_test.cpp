#include <cstring>
#include <filesystem>
#include <stdexcept>

#include "runtime/files/files.h"
#include "runtime/text/numbers.h"
#include "tests/config/config_test.h"
#include "tests/support/random.h"

using testing::HasSubstr;
using testing::IsEmpty;
using testing::StrEq;
using zm::numbers::Text;
using zm::test::ReadFile;

namespace {

constexpr char kNotes[] =
    "[NOTE CLASS]\r\nTOTAL=4\r\nCWEIGHT=1.250\r\n"
    "C01=0,DEFAULT,7,3,20,18,2,1,321,default\r\n"
    "C02=A,NAMES,2,3,30,28,3,2,1,place\r\n"
    "C03=@,HEIGHT,3,3,18,15,1,3,210,\r\n"
    "C04=#,NAMES,4,0,40,36,1,1,12,point\r\n"
    "[SCRIPT BOX]\r\nDECMIN=5\r\nDGT1MIN=3\r\n"
    "[OTHER NOTE]\r\nENMINP=250\r\n411=65,A,1,2,3,4,0\r\n412=A,@,1\r\n"
    "[FONT NAME]\r\nSCREENFONT=Arial\r\n"
    "1=SimSun,STANDARD,hztxt,0,\r\n1C=400 0 0 134 1 2 3 49\r\n"
    "2=FangSong,NAMES,txt,1,\r\n2C=700 1 0 134 0 0 0 2\r\n";

class Notes : public ConfigTest {
 protected:
    char* Mutable(const char* text) {
        m_text = text;
        return m_text.data();
    }
    static std::string Shown(const NOTELAY& r) {
        return Text("%c|%s|%d %d %d %d %d %d %d|%s", r.code, r.layerName, r.color, r.display, r.height, r.width,
                    r.interval, r.fontNumber, r.convert, r.memo);
    }
    static std::string Shown(const NOTEFONT* f) {
        if (f == nullptr) return "(null)";
        const LOGFONTA& l = f->logFont;
        return Text("%d|%s|%s|%s|%d|%d %d %d %d %d %d %d %d|%s", f->number, f->screenFont, f->textStyle, f->fontName,
                    f->slant, static_cast<int>(l.lfWeight), l.lfUnderline, l.lfStrikeOut, l.lfCharSet, l.lfOutPrecision,
                    l.lfClipPrecision, l.lfQuality, l.lfPitchAndFamily, l.lfFaceName);
    }

 private:
    std::string m_text;
};

}  // namespace

TEST_F(Notes, AreTheGlobalObjectWhileTheyLive) {
    PutNotes(kNotes);
    EXPECT_EQ(GetTqNoteLayBasePt(), nullptr);
    {
        TqNoteLayBase notes;
        EXPECT_EQ(GetTqNoteLayBasePt(), &notes);
    }
    EXPECT_EQ(GetTqNoteLayBasePt(), nullptr);
}

TEST_F(Notes, OfAnotherFileAreReadWhole) {
    PutNotes("[NOTE CLASS]\r\nTOTAL=1\r\nC01=0,OTHER,1,3,10,9,1,1,1,\r\n");
    zm::test::WriteFile(dirs.Project("own.cod"), kNotes);
    TqNoteLayBase notes(zm::files::PathText(dirs.Project("own.cod")).c_str());
    EXPECT_EQ(GetTqNoteLayBasePt(), &notes);
    EXPECT_EQ(notes.GetCount(), 4);
    EXPECT_STREQ(notes.LayerName('0'), "DEFAULT");
    EXPECT_EQ(notes.GetCWeight(), 1.25);
    EXPECT_STREQ(notes.GetScreenFont(), "Arial");
    EXPECT_EQ(notes.GetDecMin(), 5);
    EXPECT_EQ(notes.GetDgt1Min(), 3);
    EXPECT_EQ(notes.GetEnMinP(), 250);
    EXPECT_EQ(Shown(notes.GetFontInfo(1)), "1|SimSun|STANDARD|hztxt|0|400 0 0 134 1 2 3 49|SimSun");
    EXPECT_THAT(host.boxes, IsEmpty());
}

TEST_F(Notes, OfNoFileAreNone) {
    const TqNoteLayBase notes(nullptr);
    const TqNoteLayBase beyond(std::string(256, 'a').c_str());
    EXPECT_EQ(GetTqNoteLayBasePt(), nullptr);
}

TEST_F(Notes, WithoutAFileTellAndAreNotTheGlobalObject) {
    TqNoteLayBase notes;
    EXPECT_EQ(GetTqNoteLayBasePt(), nullptr);
    EXPECT_EQ(notes.GetCount(), 0);
    ASSERT_EQ(host.boxes.size(), 1u);
    EXPECT_EQ(host.boxes[0].text, Gbk("注记层管理文件ORVNOTE.COD位置不对"));
}

TEST_F(Notes, AnswerByClassCharacter) {
    PutNotes(kNotes);
    TqNoteLayBase notes;
    EXPECT_THAT(notes.LayerName('A'), StrEq("NAMES"));
    EXPECT_THAT(notes.Memo('A'), StrEq("place"));
    EXPECT_EQ(notes.Color('A'), 2);
    EXPECT_EQ(notes.OutDcDwg('#'), 0);
    EXPECT_EQ(notes.CharH('@'), 18);
    EXPECT_EQ(notes.CharW('@'), 15);
    EXPECT_EQ(notes.CharI('A'), 3);
    EXPECT_EQ(notes.Fontn('A'), 2);
    EXPECT_EQ(Shown(notes.FontInfo('A')), "2|FangSong|NAMES|txt|1|700 1 0 134 0 0 0 2|FangSong");
    EXPECT_EQ(notes.GetCWeight(), 1.25);
    EXPECT_EQ(notes.GetDecMin(), 5);
    EXPECT_EQ(notes.GetDgt1Min(), 3);
    EXPECT_EQ(notes.GetEnMinP(), 250);
    EXPECT_THAT(notes.GetScreenFont(), StrEq("Arial"));
}

TEST_F(Notes, ConvertIsThreeDigits) {
    PutNotes(kNotes);
    TqNoteLayBase notes;
    EXPECT_EQ(notes.OutNot('0'), 1);
    EXPECT_EQ(notes.OutDxf('0'), 2);
    EXPECT_EQ(notes.OutAtt('0'), 3);
}

TEST_F(Notes, AnUnknownClassIsAnsweredForTheDefault) {
    PutNotes(kNotes);
    TqNoteLayBase notes;
    EXPECT_EQ(notes.Color('x'), 7);
    EXPECT_THAT(notes.LayerName('\xB5'), StrEq("DEFAULT"));
    EXPECT_EQ(notes.GetNoteLay(0)->code, '0');
}

TEST_F(Notes, TheFirstClassIsTheDefaultWhereNoneIsNamed0) {
    PutNotes("[NOTE CLASS]\nTOTAL=2\nC01=K,KK,1,2,3,4,5,1,0,\nC02=M,MM,2,2,3,4,5,1,0,\n");
    TqNoteLayBase notes;
    EXPECT_EQ(notes.GetNoteLay('0')->code, 'K');
}

TEST_F(Notes, ALineOf8FieldsIsDroppedAndTheNextIsRead) {
    PutNotes("[NOTE CLASS]\nTOTAL=3\nC01=A,AA,1,2,3,4,5,6\nC02=B,BB,1,2,3,4,5,6,7\nC03=C\n");
    TqNoteLayBase notes;
    EXPECT_EQ(notes.GetCount(), 1);
    EXPECT_EQ(Shown(*notes.GetNoteLay('B')), "B|BB|1 2 3 4 5 6 7|") << "the memo may be missing";
    EXPECT_THAT(host.boxes, IsEmpty());
}

TEST_F(Notes, AGapInTheNumberingCostsNothing) {
    PutNotes("[NOTE CLASS]\nTOTAL=9\nC03=K,KK,1,2,3,4,5,1,313,memo here\nC09=M,MM,2,3,4,5,6,1,7\n");
    TqNoteLayBase notes;
    EXPECT_EQ(notes.GetCount(), 2);
    EXPECT_EQ(Shown(*notes.GetNoteLay('K')), "K|KK|1 2 3 4 5 1 313|memo") << "a memo ends at its first blank";
}

TEST_F(Notes, ATotalOf150ReadsAtMost99Lines) {
    std::string text = "[NOTE CLASS]\nTOTAL=150\n";
    for (int i = 1; i <= 150; ++i) text += Text("C%02d=%c,L%d,1,3,%d,5,1,1,1,m\n", i, 33 + i % 90, i, i);
    PutNotes(text);
    TqNoteLayBase notes;
    EXPECT_EQ(notes.GetCount(), 99);
}

TEST_F(Notes, PaddedLinesOfTheDialogAreReadAsWell) {
    PutNotes("[NOTE CLASS]\nTOTAL=1\nC01=A,   NAMES,   2,   3,  30,  28,   3,   2,   1, place\n");
    TqNoteLayBase notes;
    EXPECT_EQ(Shown(*notes.GetNoteLay('A')), "A|NAMES|2 3 30 28 3 2 1|place");
}

TEST_F(Notes, TextsBeyondTheirFieldsAreCutBetweenCharacters) {
    PutNotes("[NOTE CLASS]\nTOTAL=2\nC01=A,ABCDEFGHIJKLMN,1,2,3,4,5,6,7," + std::string(90, 'm') + "\nC02=B," +
             Gbk("地物地物地物") + ",1,2,3,4,5,6,7," + "x" + Gbk("注记注记注记注记注记注记注记注记注记注记") + "\n");
    TqNoteLayBase notes;
    EXPECT_EQ(Shown(*notes.GetNoteLay('A')), "A|ABCDEFGHIJ|1 2 3 4 5 6 7|" + std::string(39, 'm'));
    EXPECT_EQ(Shown(*notes.GetNoteLay('B')),
              "B|" + Gbk("地物地物地") + "|1 2 3 4 5 6 7|x" + Gbk("注记注记注记注记注记注记注记注记注记注"));
}

TEST_F(Notes, AMemoOf500BytesIsCutAtTheValueThatIsRead) {
    PutNotes("[NOTE CLASS]\nTOTAL=1\nC01=A,AA,1,2,3,4,5,6,7," + std::string(500, 'm') + "\n");
    TqNoteLayBase notes;
    EXPECT_EQ(std::strlen(notes.Memo('A')), 39u);
}

TEST_F(Notes, ALineCutAnywhereIsReadOrDropped) {
    const std::string whole = "A,NAMES,2,3,30,28,3,2,1,place";
    PutNotes(kNotes);
    TqNoteLayBase notes;
    for (std::size_t length = 0; length <= whole.size(); ++length) {
        std::string line = whole.substr(0, length);
        NOTELAY record;
        std::memset(&record, 0x5A, sizeof record);
        EXPECT_EQ(notes.ReadOneClass(line.data(), &record), length >= 23 ? 1 : 0) << line;
    }
    NOTELAY record{};
    EXPECT_EQ(notes.ReadOneClass(nullptr, &record), 0);
    EXPECT_EQ(notes.ReadOneClass(Mutable("x"), nullptr), 0);
}

TEST_F(Notes, AFontNumberWithoutALineHasTheFourDefaults) {
    PutNotes("[NOTE CLASS]\nTOTAL=1\nC01=A,AA,1,2,3,4,5,6,7,\n");
    TqNoteLayBase notes;
    EXPECT_EQ(Shown(notes.GetFontInfo(6)), "6|System|Standard|Hztxt|0|0 0 0 0 0 0 0 0|System");
    EXPECT_EQ(notes.GetFontInfo(7), nullptr);
    EXPECT_THAT(notes.GetScreenFont(), StrEq("System"));
    EXPECT_EQ(notes.GetCWeight(), 1.0);
    EXPECT_EQ(notes.GetEnMinP(), 100);
}

TEST_F(Notes, ThePartsOfAShortFontLineShiftTheDefaults) {
    std::string text = "[NOTE CLASS]\nTOTAL=5\n";
    for (int i = 1; i <= 5; ++i) text += Text("C%02d=%d,L,1,1,1,1,1,%d,0,\n", i, i, i);
    PutNotes(text +
             "[FONT NAME]\n1=Arial,\n2=OneWord\n3=a,b\n4=Arial, Two Words ,txt,2\n5=A,B,C,-7\n3C=1 2 3 4 5 6 7 "
             "227\n4C=400 1\n");
    TqNoteLayBase notes;
    EXPECT_EQ(Shown(notes.GetFontInfo(1)), "1|Arial|System|Standard|0|0 0 0 0 0 0 0 0|Arial");
    EXPECT_EQ(Shown(notes.GetFontInfo(2)), "2|OneWordSystem|Standard|Hztxt|0|0 0 0 0 0 0 0 0|OneWordSystem");
    EXPECT_EQ(Shown(notes.GetFontInfo(3)), "3|a|bSystem|Standard|0|1 2 3 4 5 6 7 227|a");
    EXPECT_EQ(Shown(notes.GetFontInfo(4)), "4|Arial|Two Words |txt|2|400 1 0 0 0 0 0 0|Arial");
    EXPECT_EQ(Shown(notes.GetFontInfo(5)), "5|A|B|C|-7|0 0 0 0 0 0 0 0|A")
        << "the default runs into the slant, and ends it";
}

TEST_F(Notes, OnlyFontsThatAClassUsesAreReadAndWritten) {
    PutNotes("[NOTE CLASS]\r\nTOTAL=1\r\nC01=A,AA,1,2,3,4,5,1,7,\r\n[FONT NAME]\r\n1=F,S,N,0,\r\n2=G,S,N,0,\r\n");
    TqNoteLayBase notes;
    EXPECT_EQ(notes.GetFontTbl()->GetSize(), 1);
    EXPECT_EQ(notes.GetFontInfo(2), nullptr);
}

TEST_F(Notes, MatchTakesTheNearestHeightOfALayer) {
    PutNotes(
        "[NOTE CLASS]\nTOTAL=5\nC01=0,D,1,1,20,1,1,1,0,\nC02=A,L,1,1,25,1,1,1,0,\nC03=B,L,1,1,35,1,1,1,0,\n"
        "C04=C,L,1,1,300,1,1,1,0,\nC05=E,X,1,1,30,1,1,1,0,\n");
    TqNoteLayBase notes;
    EXPECT_EQ(notes.MatchLayCharH(Mutable("L"), 30), 'A') << "of two at distance 5 the earlier";
    EXPECT_EQ(notes.MatchLayCharH(Mutable("L"), 31), 'B');
    EXPECT_EQ(notes.MatchLayCharH(Mutable("L"), 201), 'C');
    EXPECT_EQ(notes.MatchLayCharH(Mutable("L"), 400), '0') << "100 away is too far";
    EXPECT_EQ(notes.MatchLayCharH(Mutable("L"), -2147483647 - 1), '0');
    EXPECT_EQ(notes.MatchLayCharH(Mutable("none"), 30), '0');
    EXPECT_EQ(notes.MatchLayCharH(nullptr, 30), '0');
}

TEST_F(Notes, SearchByLayerNameGivesEachClassAndThen0) {
    PutNotes(kNotes);
    TqNoteLayBase notes;
    NOTELAY record{};
    EXPECT_EQ(notes.ReadFirstByLN(Mutable("NAMES"), &record), 'A');
    EXPECT_EQ(record.height, 30);
    EXPECT_EQ(notes.ReadNextByLN(nullptr), '#');
    EXPECT_EQ(notes.ReadNextByLN(&record), 0);
    EXPECT_EQ(notes.ReadNextByLN(&record), 0);
    EXPECT_EQ(notes.ReadFirstByLN(Mutable("names"), nullptr), 0) << "exactly that name";
    EXPECT_EQ(notes.ReadFirstByLN(Mutable("NAMES plus more than any field"), nullptr), 0);
    EXPECT_EQ(notes.ReadFirstByLN(nullptr, nullptr), 0);
}

TEST_F(Notes, DefinitionOfACodeTakesItsFirstByteForTheClassToo) {
    PutNotes(kNotes);
    TqNoteLayBase notes;
    SpOrvNoteDef d{};
    EXPECT_EQ(notes.GetNoteLayByOrvCode(411, d)->code, '0') << "no class is called 6";
    EXPECT_EQ(d.value1, 65);
    EXPECT_EQ(d.value2, 'A');
    EXPECT_EQ(d.value6, 4);
    EXPECT_EQ(d.value7, 1) << "below 1 is 1";
    EXPECT_EQ(notes.GetNoteLayByOrvCode(Mutable("412"), d)->code, 'A');
    EXPECT_EQ(d.value1, 0) << "the first field is no number there, and nothing behind it is read";
    EXPECT_EQ(notes.GetNoteLayByOrvCode(999, d)->code, '0');
    EXPECT_EQ(d.value5, 66) << "a code without a definition has the default one";
}

TEST_F(Notes, DefaultDefinitionOfACode) {
    PutNotes(kNotes);
    TqNoteLayBase notes;
    SpOrvNoteDef d{};
    notes.GetNoteLayByOrvCode(999, d);
    EXPECT_EQ(Text("%d %c %d %d %d %d %d", d.value1, d.value2, d.value3, d.value4, d.value5, d.value6, d.value7),
              "0 0 0 0 66 10 1");
}

TEST_F(Notes, DefaultRecordCanBeReadAndReplaced) {
    PutNotes(kNotes);
    TqNoteLayBase notes;
    NOTELAY record{};
    EXPECT_EQ(notes.GetDefaultRcd(&record), 1);
    EXPECT_EQ(record.code, '0');
    record.code = 'Z';
    record.color = 5;
    EXPECT_EQ(notes.SetDefaultRcd(&record), 1);
    EXPECT_EQ(notes.Color('Z'), 5);
    EXPECT_EQ(notes.Color('?'), 5);
    EXPECT_EQ(notes.MatchLayCharH(Mutable("none"), 1), 'Z');
    EXPECT_EQ(notes.GetDefaultRcd(nullptr), 0);
    EXPECT_EQ(notes.SetDefaultRcd(nullptr), 0);
}

TEST_F(Notes, AnEmptyTableRefusesADefaultAndRaisesAtALookup) {
    TqNoteLayBase notes;
    host.boxes.clear();
    NOTELAY record{};
    EXPECT_EQ(notes.SetDefaultRcd(&record), 0);
    ASSERT_EQ(host.boxes.size(), 1u);
    EXPECT_EQ(host.boxes[0].text, "system inner err in notelay-1");
    EXPECT_EQ(notes.GetDefaultRcd(&record), 0);
    EXPECT_THROW(notes.Color('A'), std::invalid_argument);
    EXPECT_THROW(notes.LayerName('A'), std::invalid_argument);
    SpOrvNoteDef d{};
    EXPECT_THROW(notes.GetNoteLayByOrvCode(1, d), std::invalid_argument);
    EXPECT_EQ(notes.ReadFirstByLN(Mutable("A"), nullptr), 0);
}

TEST_F(Notes, ShowTellsAllFields) {
    PutNotes(kNotes);
    TqNoteLayBase notes;
    EXPECT_EQ(notes.ShowRcd('A'), 1);
    ASSERT_EQ(host.boxes.size(), 1u);
    EXPECT_EQ(host.boxes[0].text,
              Gbk("1.分类号=A\n2.层名=NAMES\n3.颜色号=2\n4.显示开关=3\n5.字高=30\n6.字宽=28\n7.字隔=3\n8.字体号=2\n"
                  "9.转换定制=1\n10.备注=place"));
    NOTELAY record{};
    EXPECT_EQ(notes.ReadRcdByCN('A', &record), 1);
    EXPECT_EQ(record.width, 28);
    EXPECT_EQ(notes.ReadRcdByCN('A', nullptr), 1);
}

// ---- Writing ----

TEST_F(Notes, AFileWrittenAndReadBackIsTheSameByteForByte) {
    PutNotes(kNotes);
    TqNoteLayBase notes;
    EXPECT_EQ(notes.WriteNoteClassInfo(), 1);
    EXPECT_EQ(notes.WriteNoteFontInfo(), 1);
    const std::string written = ReadFile(dirs.Module("Orvnote.cod"));
    // Font 3 has no line in the file; the writer gives it the defaults that stand for it.
    EXPECT_EQ(written, std::string(kNotes) + "3=System,Standard,Hztxt,0,\r\n3C=0 0 0 0 0 0 0 0\r\n");
    TqNoteLayBase again;
    EXPECT_EQ(again.WriteNoteClassInfo(), 1);
    EXPECT_EQ(again.WriteNoteFontInfo(), 1);
    EXPECT_EQ(ReadFile(dirs.Module("Orvnote.cod")), written);
}

TEST_F(Notes, LogicalFontIsWrittenInTheOrderOfItsLine) {
    PutNotes(kNotes);
    TqNoteLayBase notes;
    LOGFONTA font{};
    font.lfWeight = 700;
    font.lfUnderline = 1;
    font.lfStrikeOut = 2;
    font.lfCharSet = 134;
    font.lfOutPrecision = 3;
    font.lfClipPrecision = 4;
    font.lfQuality = 5;
    font.lfPitchAndFamily = 49;
    font.lfHeight = -99;
    EXPECT_EQ(notes.WriteLogFontInfo(8, font), 1);
    char line[TqNoteLayBase::kValueSize];
    EXPECT_EQ(notes.GetOneRcd("FONT NAME", "8C", line, ""), 20);
    EXPECT_THAT(line, StrEq("700 1 2 134 3 4 5 49"));
}

TEST_F(Notes, ClassLineOfTheLongestFieldsFitsItsBuffer) {
    PutNotes(kNotes);
    TqNoteLayBase notes;
    NOTELAY record{};
    std::memset(&record, 'x', sizeof record);
    record.code = 'A';
    for (int* number : {&record.color, &record.display, &record.height, &record.width, &record.interval,
                        &record.fontNumber, &record.convert})
        *number = -2147483647 - 1;
    char line[TqNoteLayBase::kLineSize];
    const int length = notes.MakeOneString(line, &record);
    EXPECT_EQ(length, static_cast<int>(std::strlen(line)));
    EXPECT_LT(length, TqNoteLayBase::kLineSize);
    EXPECT_EQ(notes.MakeOneString(nullptr, &record), 0);
    EXPECT_EQ(notes.MakeOneString(line, nullptr), 0);
}

TEST_F(Notes, AFileThatCannotBeWrittenIsReported) {
    PutNotes(kNotes);
    TqNoteLayBase notes;
    std::filesystem::remove(dirs.Module("Orvnote.cod"));
    std::filesystem::create_directory(dirs.Module("Orvnote.cod"));
    EXPECT_EQ(notes.WriteNoteClassInfo(), 0);
    EXPECT_EQ(notes.WriteNoteFontInfo(), 0);
    EXPECT_EQ(notes.WriteOneRcd("A", "k", "v"), 0);
}

TEST_F(Notes, AReadThatFindsFewerClassesKeepsLookupsSafe) {
    PutNotes("[NOTE CLASS]\nTOTAL=2\nC01=A,AA,1,2,3,4,5,1,7,\nC02=0,DD,2,2,3,4,5,1,7,\n");
    TqNoteLayBase notes;
    EXPECT_EQ(notes.Color('?'), 2);
    PutNotes("[NOTE CLASS]\nTOTAL=1\nC01=A,AA,1,2,3,4,5,1,7,\n");
    EXPECT_EQ(notes.ReadNoteClassInfo(), 1);
    EXPECT_EQ(notes.ReadNoteFontInfo(), 1);
    EXPECT_EQ(notes.Color('?'), 1);
}

TEST_F(Notes, WithoutMemoryReadingStopsWithAMessage) {
    PutNotes(kNotes);
    static int left = 0;
    const auto scarce = [](std::size_t size) -> void* { return --left < 0 ? nullptr : std::malloc(size); };
    zm::config::state().allocate = scarce;
    left = 2;
    {
        TqNoteLayBase notes;
        EXPECT_EQ(notes.GetCount(), 2);
    }
    ASSERT_GE(host.boxes.size(), 1u);
    EXPECT_EQ(host.boxes[0].text, "cod mem err");
    host.boxes.clear();
    left = 5;
    {
        TqNoteLayBase notes;
        EXPECT_EQ(notes.GetCount(), 4);
        EXPECT_EQ(notes.GetFontTbl()->GetSize(), 1);
    }
    ASSERT_EQ(host.boxes.size(), 1u);
    EXPECT_EQ(host.boxes[0].text, "font info mem err");
}

TEST_F(Notes, NoiseIsReadWithoutHarm) {
    ZM_TRACE_SEED();
    zm::test::Random random(4);
    for (int round = 0; round < 300; ++round) {
        std::string text = "[NOTE CLASS]\nTOTAL=3\n";
        for (int i = 1; i <= 3; ++i) {
            text += Text("C%02d=", i);
            const int length = random.Int(0, 200);
            for (int k = 0; k < length; ++k) text += "A,,,0123456789 -x\xB5\xD8"[random.Int(0, 18)];
            text += "\n";
        }
        PutNotes(text);
        TqNoteLayBase notes;
        if (notes.GetCount() > 0) notes.ShowRcd('A');
        EXPECT_EQ(notes.GetCount() > 0, GetTqNoteLayBasePt() == &notes);
    }
}
