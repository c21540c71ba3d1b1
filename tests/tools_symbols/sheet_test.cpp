// The page of pictures: what it holds, and that a browser shows it.
#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <cstdlib>

#include "own_library.h"
#include "tests/support/scratch.h"
#include "tests/support/test_host.h"
#include "tools/symbols/picture.h"
#include "tools/symbols/sheet_page.h"
#include "tools/symbols/symbols.h"
#include "zenromath/draw.h"
#include "zenromath/symbol.h"

namespace zm::tool::symbols {
namespace {

using testing::HasSubstr;
using testing::Not;

std::size_t Count(const std::string& text, const std::string& part) {
    std::size_t count = 0;
    for (std::size_t at = text.find(part); at != std::string::npos; at = text.find(part, at + part.size())) ++count;
    return count;
}

const std::string& OwnPage() {
    static const std::string page = SheetPage(test::LibraryPath(test::OwnLibrary()).c_str(), {});
    return page;
}

/// The figure of a code.
std::string FigureOf(const std::string& page, const std::string& id) {
    const std::size_t begin = page.find("<figure id=\"" + id + "\"");
    return begin == std::string::npos ? "" : page.substr(begin, page.find("</figure>", begin) - begin);
}

TEST(SheetPage, HasAFigureForEveryCodeAndEveryOrnament) {
    EXPECT_EQ(Count(OwnPage(), "<figure id=\"c"), 516u);
    EXPECT_EQ(Count(OwnPage(), "<figure id=\"y"), 39u);
    // One picture for each code and three for each ornament.
    EXPECT_EQ(Count(OwnPage(), "<svg "), 516u + 3u * 39u);
}

TEST(SheetPage, NeedsNothingElse) {
    for (const char* outside : {"http:", "https:", "src=", "@import", "<link"})
        EXPECT_THAT(OwnPage(), Not(HasSubstr(outside)));
}

TEST(SheetPage, AFigureHasPictureNoteKindAndSourceLines) {
    const std::string figure = FigureOf(OwnPage(), "c20");
    EXPECT_THAT(figure, HasSubstr("<b>20</b><span class=\"k\">G</span> 水井 <small>2.2 mm</small>"));
    EXPECT_THAT(figure, HasSubstr("<summary>lines 127 to 131</summary><pre>*20 G &quot;水井&quot; Well\n"
                                  "1 0.4,-1.1 0.4,1.1\n"));
    // Four strokes of 15 pixels, 0.15 mm, at 100 pixels to a millimetre.
    EXPECT_THAT(figure, HasSubstr("<path d=\"M40 110L40 -110M-40 110L-40 -110M-110 -40L110 -40M-110 40L110 40\" "
                                  "stroke-width=\"15\"/>"));
}

TEST(SheetPage, PicturesHavePaperSize) {
    // 2.2 mm and the pen, with a margin of 1 mm on each side.
    EXPECT_THAT(FigureOf(OwnPage(), "c20"),
                HasSubstr("<svg style=\"--w:4.34;--h:4.34\" viewBox=\"-217 -217 434 434\">"));
}

// As on a sheet: the colour and the width of its layer, and the length of its pattern.
TEST(SheetPage, ServesAsALegendWhereTheLooksOfLayersAreKnown) {
    SheetOptions options;
    options.look = [](int code) {
        return SheetOptions::Look{code == 300 ? 0.3 : 0.15, code == 300 ? 0xE39F00UL : 0UL};
    };
    const std::string page = SheetPage(test::LibraryPath(test::OwnLibrary()).c_str(), options);
    EXPECT_THAT(FigureOf(page, "c300"), HasSubstr("stroke=\"#009fe3\" stroke-width=\"30\""));
    EXPECT_THAT(FigureOf(page, "c300"), HasSubstr("line 0.30 mm"));
    EXPECT_THAT(FigureOf(page, "c200"), HasSubstr("stroke-width=\"15\""));
    EXPECT_THAT(FigureOf(page, "c247"), HasSubstr("every 5.0 mm"));  // dashes of 4.0, gaps of 1.0
    EXPECT_THAT(FigureOf(page, "c200"), Not(HasSubstr("every")));
    EXPECT_THAT(FigureOf(OwnPage(), "c300"), Not(HasSubstr("line 0")));
}

// Three symbols of the field grid beside each other, and a line with three bends.
TEST(SheetPage, SamplesShowEachPatternThreeTimes) {
    EXPECT_THAT(FigureOf(OwnPage(), "c250"), HasSubstr("M-3100 400L-1063 400L-81 -400L921 400L3100 400"));
    const std::string wood = FigureOf(OwnPage(), "c540");  // rings, each an arc of two halves
    EXPECT_GE(Count(wood, "A50.0 50.0"), 3u);
}

TEST(SheetPage, OrnamentsHaveNumberedControlPointsAtThreeScales) {
    const std::string figure = FigureOf(OwnPage(), "y26");
    for (const char* scale : {"m500", "m1000", "m2000"}) EXPECT_THAT(figure, HasSubstr(scale));
    EXPECT_EQ(Count(figure, "</text>"), 12u);
    for (const char* number : {">1</text>", ">2</text>", ">3</text>", ">4</text>"})
        EXPECT_EQ(Count(figure, number), 3u) << number;
    EXPECT_THAT(figure, HasSubstr("车行桥"));
    EXPECT_THAT(FigureOf(OwnPage(), "y21"), HasSubstr("draws nothing"));
}

TEST(SheetPage, MessagesOfTheLibraryStandWithTheirSymbol) {
    const test::ScratchDir dir;
    test::WriteFile(dir / "symbol.dat", "*5 G\n3 0,0 1\n*7 LC\nG5\n");
    test::TestHost host;
    const std::string page = SheetPage(test::LibraryPath(dir / "symbol.dat").c_str(), {});
    EXPECT_TRUE(host.boxes.empty());
    EXPECT_THAT(FigureOf(page, "c7"), HasSubstr("<div class=\"w\">7 bad LC symbol</div>"));
    EXPECT_THAT(FigureOf(page, "c5"), Not(HasSubstr("class=\"w\"")));
}

TEST(SheetPage, BytesOfADamagedFileStayText) {
    const test::ScratchDir dir;
    test::WriteFile(dir / "symbol.dat", "*5 G \"<b>&\x01\xFF\"\n3 0,0 1\n");
    const std::string figure = FigureOf(SheetPage(test::LibraryPath(dir / "symbol.dat").c_str(), {}), "c5");
    EXPECT_THAT(figure, HasSubstr("&lt;b&gt;&amp;?\xEF\xBF\xBD"));
    EXPECT_THAT(figure, Not(HasSubstr("<b>&")));
}

TEST(SheetPage, OfAMissingFileIsEmpty) {
    EXPECT_EQ(SheetPage("no\\such\\file.dat", {}), "");
}

TEST(SheetPage, LeavesContextScaleAndHostAsTheyWere) {
    test::TestHost host;
    SelectWorkingTqDC(nullptr);
    setgscale(750.0);
    SheetPage(test::LibraryPath(test::OwnLibrary()).c_str(), {});
    EXPECT_EQ(TqDC, nullptr);
    EXPECT_EQ(setgscale(1000.0), 750.0);
    EXPECT_EQ(&CurrentHost(), &host);
}

TEST(Picture, KeepsTheRectangleAroundWhatWasDrawn) {
    const Picture picture = TakePicture(500.0, 0.2, [] { TqDC->line(-1.0, 0.0, 2.0, 1.0); });
    // 1 m is 2 mm at 1:500; half a pen of 0.2 mm around.
    EXPECT_NEAR(picture.left, -2.1, 0.011);
    EXPECT_NEAR(picture.top, 2.1, 0.011);
    EXPECT_NEAR(picture.width, 6.2, 0.011);
    EXPECT_NEAR(picture.height, 2.2, 0.011);
    EXPECT_EQ(picture.body, "<path d=\"M-200 0L400 -200\" stroke-width=\"20\"/>");
}

TEST(Picture, ArcsRunCounterClockwise) {
    const Picture picture = TakePicture(1000.0, 0.2, [] { TqDC->drawarc(0.0, 0.0, 1.0, 0.0, 1.5707963267948966); });
    // From the right over the middle to the top; y is down.
    EXPECT_EQ(picture.body,
              "<path d=\"M100 0A100.0 100.0 0 0 0 71 -71A100.0 100.0 0 0 0 0 -100\" stroke-width=\"20\"/>");
}

TEST(Picture, ADrawingOfNothingHasNoSize) {
    const Picture picture = TakePicture(1000.0, 0.2, [] {});
    EXPECT_EQ(picture.body, "");
    EXPECT_EQ(picture.width, 0.0);
}

#if !defined(_WIN32)

/// A path as a file URL, its bytes beyond letters and digits escaped.
std::string FileUrl(const std::filesystem::path& path) {
    std::string url = "file://";
    for (const char c : path.string()) {
        char escaped[4];
        std::snprintf(escaped, sizeof escaped, "%%%02X", static_cast<unsigned char>(c));
        if (std::isalnum(static_cast<unsigned char>(c)) != 0 || c == '/' || c == '.' || c == '-' || c == '_')
            url += c;
        else
            url += escaped;
    }
    return url;
}

class SheetInBrowser : public testing::Test {
 protected:
    void SetUp() override {
        if (std::system("command -v chromium >/dev/null 2>&1") != 0)
            GTEST_SKIP() << "THE PAGE WAS NOT LOOKED AT: there is no chromium. Install it (apt-get install chromium) "
                            "to run this test.";
        test::WriteFile(m_dir / "sheet.html", OwnPage());
    }

    /// Runs the browser on the page; hash is what stands behind # in its address.
    int Browse(const std::string& hash, const std::string& options) {
        const std::string command =
            "timeout 120 chromium --headless --no-sandbox --disable-gpu --disable-quic --no-first-run "
            "--disable-background-networking --user-data-dir='" +
            (m_dir / ("profile" + std::to_string(++m_runs))).string() + "' " + options + " '" +
            FileUrl(m_dir / "sheet.html") + "#" + hash + "'";
        return std::system(command.c_str());
    }

    test::ScratchDir m_dir;
    int m_runs = 0;
};

TEST_F(SheetInBrowser, TakesAScreenshotWithPictures) {
    const std::filesystem::path shot = m_dir / "sheet.png";
    ASSERT_EQ(Browse("zoom=2",
                     "--window-size=1200,900 --hide-scrollbars --screenshot='" + shot.string() + "' >/dev/null 2>&1"),
              0);
    const std::string png = test::ReadFile(shot);
    ASSERT_GT(png.size(), 24u);
    EXPECT_EQ(png.substr(0, 8), "\x89PNG\r\n\x1A\n");
    // Width and height in the header; an empty page of this size has below 15,000 bytes.
    EXPECT_EQ(png.substr(16, 8), std::string("\0\0\x04\xB0\0\0\x03\x84", 8));
    EXPECT_GT(png.size(), 50000u);
    if (const char* keep = std::getenv("ZM_KEEP_SCREENSHOT"); keep != nullptr)
        std::filesystem::copy_file(shot, keep, std::filesystem::copy_options::overwrite_existing);
}

TEST_F(SheetInBrowser, FilterAndEnlargementWork) {
    const std::filesystem::path dom = m_dir / "dom.html";
    ASSERT_EQ(Browse("filter=%E6%B0%B4%E4%BA%95&zoom=4&scale=500", "--dump-dom >'" + dom.string() + "' 2>/dev/null"),
              0);
    const std::string page = test::ReadFile(dom);
    EXPECT_THAT(page, HasSubstr(">1 of 555</span>"));
    EXPECT_EQ(Count(page, "hidden=\"\""), 554u);
    EXPECT_THAT(page, HasSubstr("style=\"--zoom: 4;\""));
    EXPECT_THAT(page, HasSubstr("data-m=\"500\""));
}

TEST_F(SheetInBrowser, ANumberInTheFilterIsAWholeCode) {
    const std::filesystem::path dom = m_dir / "dom.html";
    ASSERT_EQ(Browse("filter=12", "--dump-dom >'" + dom.string() + "' 2>/dev/null"), 0);
    // Code 12 and ornament 12, not 112 or 120.
    EXPECT_THAT(test::ReadFile(dom), HasSubstr(">2 of 555</span>"));
}

#endif

}  // namespace
}  // namespace zm::tool::symbols
