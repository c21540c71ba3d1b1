// Where texts stand, and what they leave behind.
#include <cmath>

#include "dwg/writer/state.h"
#include "dwg/writer/writer.h"
#include "tests/dwg/drawing.h"
#include "zenromath/geometry.h"

namespace zm::test {
namespace {

struct TextRecord {
    double z, x, y, height;
    std::string text;
    double angle, width, oblique;
    int style, generation;
};

class Texts : public DrawingTest {
 protected:
    Texts() { Open(); }

    std::vector<TextRecord> Records() {
        m_drawing = Close();
        std::vector<TextRecord> texts;
        for (const std::string& bytes : m_drawing.Entities()) {
            const Drawing r(bytes);
            if (r.u16(0) != 1799) continue;
            const std::size_t n = r.u16(42);
            EXPECT_EQ(bytes.size(), 70 + n);
            texts.push_back({r.f64(10), r.f64(18), r.f64(26), r.f64(34), bytes.substr(44, n), r.f64(44 + n),
                             r.f64(52 + n), r.f64(60 + n), static_cast<int>(r.u8(68 + n)),
                             static_cast<int>(r.u8(69 + n))});
        }
        return texts;
    }
    const Drawing& drawing() const { return m_drawing; }

 private:
    Drawing m_drawing;
};

constexpr char kRoad[] = "\xC2\xB7";  // one Chinese character, "road"
// Positions pass sines and cosines; the tolerance is theirs, a few last bits at these magnitudes.
constexpr double kNear = 1e-12;

TEST_F(Texts, AHorizontalStyleWithJustification1StandsExactlyAtThePointWhateverTheAngle) {
    for (const double angle : {0.0, 33.0, 90.0, 271.5}) _LDBtext(1, 10.1, 20.2, 3, angle, "ABC");
    for (const TextRecord& text : Records()) {
        EXPECT_EQ(text.x, 10.1);
        EXPECT_EQ(text.y, 20.2);
    }
}

TEST_F(Texts, Justification2And3MoveByTheTextsLengthInCharacters) {
    SetStyle(0, "W", "txt", 0.5);
    _LDBtext(2, 100, 50, 4, 0, "ABCDE");
    _LDBtext(3, 100, 50, 4, 0, "ABCDE");
    _LDBtext(3, 100, 50, 4, 0, (std::string("A") + kRoad).c_str());  // two characters, three bytes
    const auto texts = Records();
    ASSERT_EQ(texts.size(), 3u);
    EXPECT_NEAR(texts[0].x, 95, kNear);  // 5 characters of 4 * 0.5, halved
    EXPECT_NEAR(texts[1].x, 90, kNear);
    EXPECT_NEAR(texts[2].x, 96, kNear);
    EXPECT_NEAR(texts[0].y, 50, kNear);
}

TEST_F(Texts, AByteFrom128To160LeadsACharacterToo) {
    _LDBtext(3, 100, 50, 1, 0,
             "\x80"
             "A\xA0"
             "B");
    EXPECT_NEAR(Records().at(0).x, 98, kNear);  // two characters
}

TEST_F(Texts, ALeadByteAtTheEndIsACharacterOfOneByte) {
    _LDBtext(3, 100, 50, 1, 0, "A\xC2");
    const auto texts = Records();
    EXPECT_NEAR(texts.at(0).x, 98, kNear);
    EXPECT_EQ(texts.at(0).text, "A\xC2");
}

TEST_F(Texts, DigitsInAVerticalStyleAreOneRecord) {
    SetStyle(1, "V", "txt");
    _LDBtext(1, 10, 20, 2, 0, "123");
    const auto texts = Records();
    ASSERT_EQ(texts.size(), 1u);
    EXPECT_EQ(texts[0].x, 10);
    EXPECT_EQ(texts[0].y, 20);
}

TEST_F(Texts, DigitsInAVerticalStyleMoveUpByCellsWithGaps) {
    SetStyle(1, "V", "txt");
    _LDBtext(3, 10, 20, 2, 0, "123");
    _LDBtext(2, 10, 20, 2, 0, "123");
    const auto texts = Records();
    ASSERT_EQ(texts.size(), 2u);
    EXPECT_NEAR(texts[0].x, 10, kNear);
    EXPECT_NEAR(texts[0].y, 27, kNear);  // 3 cells of 2 and 2 gaps of 0.5
    EXPECT_NEAR(texts[1].y, 23.5, kNear);
}

TEST_F(Texts, AChineseCharacterInAVerticalStyleSplitsTheTextAndShiftsNoDigit) {
    SetStyle(1, "V", "txt");
    _LDBtext(1, 10, 20, 2, 0, (std::string(kRoad) + "12").c_str());
    const auto texts = Records();
    ASSERT_EQ(texts.size(), 3u);
    EXPECT_EQ(texts[0].text, kRoad);
    EXPECT_NEAR(texts[0].x, 9, kNear);  // half a width to the left, one height down
    EXPECT_NEAR(texts[0].y, 18, kNear);
    EXPECT_EQ(texts[1].text, "1");
    EXPECT_NEAR(texts[1].x, 10, kNear);
    EXPECT_NEAR(texts[1].y, 18, kNear);
    EXPECT_EQ(texts[2].text, "2");
    EXPECT_NEAR(texts[2].y, 16, kNear);
}

struct PlaceCase {
    int justification;
    double x, y;  // of the first character's cell
};
void PrintTo(const PlaceCase& c, std::ostream* out) {
    *out << c.justification;
}
class VerticalPlaces : public Texts, public testing::WithParamInterface<PlaceCase> {};

// Two characters of height 4 and width factor 0.5 at (100, 50): a column of 8, half a width of 1.
TEST_P(VerticalPlaces, MoveTheColumn) {
    SetStyle(1, "V", "txt", 0.5);
    _LDBtext(GetParam().justification, 100, 50, 4, 0, (std::string("1") + kRoad).c_str());
    const auto texts = Records();
    ASSERT_EQ(texts.size(), 2u);
    EXPECT_NEAR(texts[0].x, GetParam().x, kNear);
    EXPECT_NEAR(texts[0].y, GetParam().y, kNear);
}
INSTANTIATE_TEST_SUITE_P(All, VerticalPlaces,
                         testing::Values(PlaceCase{1, 100, 50}, PlaceCase{2, 100, 54}, PlaceCase{3, 100, 58},
                                         PlaceCase{4, 101, 50}, PlaceCase{5, 99, 50}, PlaceCase{6, 101, 54},
                                         PlaceCase{7, 99, 54}, PlaceCase{8, 101, 58}, PlaceCase{9, 99, 58},
                                         PlaceCase{0, 100, 50}, PlaceCase{10, 100, 50}),
                         [](const auto& info) { return std::to_string(info.param.justification); });

TEST_F(Texts, AColumnTurnedByARightAngleRunsToTheRight) {
    SetStyle(1, "V", "txt");
    _LDBtext(1, 10, 20, 2, 90, (std::string("1") + kRoad + "2").c_str());
    const auto texts = Records();
    ASSERT_EQ(texts.size(), 3u);
    EXPECT_NEAR(texts[2].x, 14, 1e-7);  // the short constant for pi turns a little less
    EXPECT_NEAR(texts[2].y, 20, 1e-7);
}

TEST_F(Texts, JustificationFrom4OnAHorizontalTextKeepsThePositionOfTheTextBefore) {
    _LDBtext(4, 1, 2, 3, 0, "first");
    _LDBtext(1, 10, 20, 3, 0, "second");
    _LDBtext(4, 30, 40, 3, 0, "third");
    _LDBinttext(9, 50, 60, 3, 0, 7);
    const auto texts = Records();
    ASSERT_EQ(texts.size(), 4u);
    EXPECT_EQ(texts[0].x, 0);  // nothing before it
    EXPECT_EQ(texts[0].y, 0);
    EXPECT_EQ(texts[2].x, 10);
    EXPECT_EQ(texts[2].y, 20);
    EXPECT_EQ(texts[3].x, 10);
}

TEST_F(Texts, AStyleOfNoKnownFlagKeepsThePositionOfTheTextBefore) {
    _LDBtext(1, 10, 20, 3, 0, "first");
    SetStyle(8, "NEW", "txt");  // its flag stays zero
    _LDBtext(1, 30, 40, 3, 0, "second");
    EXPECT_EQ(Records().at(1).x, 10);
}

TEST_F(Texts, TheStalePositionBeginsAnewWithEachSession) {
    _LDBtext(1, 10, 20, 3, 0, "first");
    Close();
    Open("second.dwg");
    _LDBtext(4, 30, 40, 3, 0, "second");
    const Drawing second = Close();
    EXPECT_EQ(Drawing(second.Entities().at(0)).f64(18), 0);
}

TEST_F(Texts, EveryTextSetsTheLastHeightOfAllStyles) {
    SetStyle(0, "A", "txt");
    SetStyle(1, "B", "txt");
    _LDBtext(1, 0, 0, 7.5, 0, "x");
    Records();
    for (std::size_t i = 0; i < 3; ++i) EXPECT_EQ(drawing().Style(i).substr(58, 8), F64(7.5)) << i;
}

TEST_F(Texts, TheRecordTakesObliqueIndexAndGenerationOfTheCurrentStyle) {
    SetStyle(6, "BACK", "txt", 1.25, 18);
    _LDBtext(1, 0, 0, 1, 0, "x");
    const auto text = Records().at(0);
    EXPECT_EQ(text.width, 1.25);
    EXPECT_EQ(text.oblique, 18 * 3.14159265 / 180);
    EXPECT_EQ(text.style, 1);
    EXPECT_EQ(text.generation, 6);
}

TEST_F(Texts, AnEmptyOrNullTextIsARecordOfNoBytes) {
    _LDBtext(1, 1, 2, 3, 0, "");
    _LDBtext(1, 1, 2, 3, 0, nullptr);
    const auto texts = Records();
    ASSERT_EQ(texts.size(), 2u);
    EXPECT_EQ(texts[1].text, "");
}

TEST_F(Texts, AnIntegerIsWrittenInDecimal) {
    _LDBsetelev(5, 0);
    _LDBinttext(1, 1, 2, 3, 0, -42);
    _LDBinttext(1, 1, 2, 3, 0, INT32_MIN);
    const auto texts = Records();
    EXPECT_EQ(texts.at(0).text, "-42");
    EXPECT_EQ(texts.at(0).z, 5);
    EXPECT_EQ(texts.at(0).height, 3);
    EXPECT_EQ(texts.at(1).text, "-2147483648");
}

TEST_F(Texts, ARealExchangesItsHeightAndElevation) {
    _LDBsetelev(5, 0);
    _LDBrealtext(1, 1, 2, 3, 0, 1234.5);
    const auto text = Records().at(0);
    EXPECT_EQ(text.text, "1234.5");
    EXPECT_EQ(text.z, 3);
    EXPECT_EQ(text.height, 5);
    EXPECT_EQ(drawing().Style(0).substr(58, 8), F64(5));
}

TEST_F(Texts, ARealHasAtMostTwelveDigits) {
    _LDBrealtext(1, 1, 2, 3, 0, 1.0 / 3);
    _LDBrealtext(1, 1, 2, 3, 0, 1e20);
    const auto texts = Records();
    EXPECT_EQ(texts.at(0).text, "0.333333333333");
    EXPECT_EQ(texts.at(1).text, "1e+20");
}

TEST_F(Texts, AFittedTextIsStretchedFromPointToPoint) {
    _LDBfittext(0, 0, 30, 40, 5, "ABCDE");
    const auto text = Records().at(0);
    EXPECT_EQ(text.width, 2.0);  // 50 over 5 characters over height 5
    EXPECT_EQ(text.angle, std::atan2(40.0, 30.0));
}

TEST_F(Texts, AFittedTextInAVerticalStyleIsRefusedWithItsMessage) {
    SetStyle(1, "V", "txt");
    _LDBfittext(0, 0, 30, 40, 5, "ABCDE");
    EXPECT_EQ(Messages(), std::vector<std::string>{"Tere is VERTICAL style. Can't fit!"});
    EXPECT_TRUE(Records().empty());
}

TEST_F(Texts, AFittedTextInAStyleOfNoKnownFlagIsNotWritten) {
    SetStyle(8, "NEW", "txt");
    _LDBfittext(0, 0, 30, 40, 5, "ABCDE");
    EXPECT_TRUE(host.boxes.empty());
    EXPECT_TRUE(Records().empty());
}

TEST_F(Texts, AnEmptyFittedTextIsStillARecord) {
    _LDBfittext(0, 0, 30, 40, 5, "");
    EXPECT_EQ(Records().at(0).text, "");
}

}  // namespace
}  // namespace zm::test
