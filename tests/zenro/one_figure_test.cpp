// The same figure on every output: positions and widths of one sheet, read back from SVG, PDF, PNG and DWG.
#include <gtest/gtest.h>

#include <cpl_conv.h>
#include <cpl_vsi.h>
#include <gdal_priv.h>

#include <cmath>
#include <nlohmann/json.hpp>
#include <sstream>

#include "tests/support/recorded_numbers.h"
#include "tests/zenro/program.h"

namespace {

using namespace zm::test;

constexpr double kMost = 0.05;  // millimetres of paper that outputs may differ by

// 100 m square at 1:1000: a level line of 0.15 mm from (20, 30) to (80, 30), an index contour of 0.3 mm from (50, 60) to
// (50, 90), millimetres from the lower left corner.
class OneFigure : public testing::Test {
 protected:
    void SetUp() override {
        m_zenro.File("in.geojson", Collection(LineFeature("[40512020,3456030],[40512080,3456030]", "\"a\":1") + "," +
                                              LineFeature("[40512050,3456060],[40512050,3456090]", "\"a\":2")));
        m_zenro.File("r.rules", "a = 1 -> symbol 250\na = 2 -> symbol 381\n");
        std::vector<std::string> arguments = {"draw",       "in.geojson", "--rules",
                                              "./r.rules",  "--scale",    "1000",
                                              "--no-frame", "--sheet",    "40512000,3456000,40512100,3456100"};
        for (const char* output : {"a.svg", "a.dwg", "a.rec"}) arguments.insert(arguments.end(), {"-o", output});
        if (ZENRO_HAS_QT) arguments.insert(arguments.end(), {"-o", "a.png", "-o", "a.pdf", "--dpi", "600"});
        const Outcome r = m_zenro.Run(arguments);
        ASSERT_EQ(r.status, 0) << r.err;
    }
    Program m_zenro;
};

// The number after a text, from a place on.
double After(const std::string& text, const std::string& what, std::size_t from = 0) {
    const std::size_t at = text.find(what, from);
    return at == std::string::npos ? NAN : std::strtod(text.c_str() + at + what.size(), nullptr);
}

TEST_F(OneFigure, SvgHasPositionsAndWidths) {
    const std::string svg = ReadFile(m_zenro / "a.svg");
    const double units = After(svg, "viewBox=\"0 0 ") / 100.0;  // a millimetre
    EXPECT_NEAR(units, 40.0, 1e-9);
    const std::size_t thin = svg.find("stroke-width=\"6\""), thick = svg.find("stroke-width=\"12\"");
    ASSERT_NE(thin, std::string::npos) << svg;
    ASSERT_NE(thick, std::string::npos) << svg;
    double x1, y1, x2, y2;
    ASSERT_EQ(std::sscanf(svg.c_str() + svg.find(" d=\"M", thin), " d=\"M%lf %lfL%lf %lf", &x1, &y1, &x2, &y2), 4);
    EXPECT_NEAR((x1 + 0.5) / units, 20.0, kMost);
    EXPECT_NEAR((y1 + 0.5) / units, 70.0, kMost);
    EXPECT_NEAR((x2 + 0.5) / units, 80.0, kMost);
    EXPECT_NEAR((y2 + 0.5) / units, 70.0, kMost);
}

TEST_F(OneFigure, DwgHasPositionsAndTheColoursOfTheSheet) {
    const std::string dump = m_zenro.Run({"dwg", "dump", "a.dwg", "--json"}).out;
    // Metres of ground are millimetres of paper here.
    const double wanted[][2] = {{40512020, 3456030}, {40512080, 3456030}, {40512050, 3456060}, {40512050, 3456090}};
    for (const auto& [x, y] : wanted) {
        double nearest = 1e9;
        std::istringstream lines(dump);
        for (std::string line; std::getline(lines, line);)
            for (const auto& point : nlohmann::json::parse(line).value("points", nlohmann::json::array()))
                nearest = std::min(nearest, std::hypot(point[0].get<double>() - x, point[1].get<double>() - y));
        EXPECT_LT(nearest, kMost) << x << " " << y;
    }
    EXPECT_NE(dump.find("\"layer\":\"计曲线\",\"color\":34"), std::string::npos) << dump;  // brown
    EXPECT_NE(dump.find("\"layer\":\"道路\",\"color\":7"), std::string::npos) << dump;     // black
}

#if ZENRO_HAS_QT
// What a line of pixels across a stroke has of black: the stroke's width in pixels; and its middle.
void Measure(GDALDataset& image, int x, int y, int dx, int dy, int count, double& width, double& middle) {
    width = middle = 0.0;
    for (int i = 0; i < count; ++i) {
        double ink = 0.0;
        unsigned char least = 255;
        for (int band = 1; band <= 3; ++band) {
            unsigned char value = 255;
            ASSERT_EQ(image.GetRasterBand(band)->RasterIO(GF_Read, x + i * dx, y + i * dy, 1, 1, &value, 1, 1, GDT_Byte,
                                                          0, 0),
                      CE_None);
            least = std::min(least, value);
        }
        ink = (255 - least) / 255.0;
        width += ink;
        middle += ink * (i + 0.5);
    }
    middle /= width;
}

TEST_F(OneFigure, PngHasPositionsAndWidthsAtItsResolution) {
    GDALAllRegister();
    GDALDatasetUniquePtr image(
        GDALDataset::Open((m_zenro / "a.png").c_str(), GDAL_OF_RASTER, nullptr, nullptr, nullptr));
    ASSERT_NE(image, nullptr);
    const double pixels = 600.0 / 25.4;  // a millimetre
    EXPECT_NEAR(image->GetRasterXSize(), 100.0 * pixels, 1.0);
    double width = 0.0, middle = 0.0;
    const int top = static_cast<int>(68.0 * pixels);
    Measure(*image, static_cast<int>(50.0 * pixels), top, 0, 1, static_cast<int>(4.0 * pixels), width, middle);
    EXPECT_NEAR(width / pixels, 0.15, 0.02);
    EXPECT_NEAR((top + middle) / pixels, 70.0, kMost);
    const int left = static_cast<int>(48.0 * pixels);
    Measure(*image, left, static_cast<int>(25.0 * pixels), 1, 0, static_cast<int>(4.0 * pixels), width, middle);
    EXPECT_NEAR(width / pixels, 0.3, 0.02);
    EXPECT_NEAR((left + middle) / pixels, 50.0, kMost);
}

// The drawing operators of a PDF file, unpacked.
std::string Operators(const std::string& pdf) {
    std::string all;
    for (std::size_t at = pdf.find("stream\n"); at != std::string::npos; at = pdf.find("\nstream\n", at + 1)) {
        std::size_t begin = pdf.find('\n', at + 1) + 1;
        if (pdf.compare(at, 7, "stream\n") == 0) begin = at + 7;
        size_t size = 0;
        void* text = CPLZLibInflate(pdf.data() + begin, pdf.size() - begin, nullptr, 0, &size);
        if (text == nullptr) continue;
        all.append(static_cast<char*>(text), size);
        VSIFree(text);
    }
    return all;
}

TEST_F(OneFigure, PdfHasPositionsAndWidths) {
    const std::string pdf = ReadFile(m_zenro / "a.pdf");
    EXPECT_NEAR(After(pdf, "/MediaBox [0 0 "), 100.0 / 25.4 * 72.0, 1.0);
    const std::string operators = Operators(pdf);
    ASSERT_FALSE(operators.empty());
    // The pen's width and the line's ends stand in device units; the page's matrix takes them to points.
    EXPECT_NE(operators.find("6 w"), std::string::npos) << operators.substr(0, 2000);
    EXPECT_NE(operators.find("12 w"), std::string::npos);
    std::istringstream lines(operators);
    bool level = false;
    double x = 0.0, y = 0.0;
    for (std::string line; std::getline(lines, line);) {
        double u = 0.0, v = 0.0;
        char what = 0;
        if (std::sscanf(line.c_str(), "%lf %lf %c", &u, &v, &what) != 3) continue;
        if (what == 'l' && std::fabs(y / 40.0 - 70.0) < kMost && std::fabs(v / 40.0 - 70.0) < kMost &&
            std::fabs(x / 40.0 - 20.0) < kMost && std::fabs(u / 40.0 - 80.0) < kMost)
            level = true;
        x = u;
        y = v;
    }
    EXPECT_TRUE(level) << operators.substr(0, 2000);
}
#endif

TEST_F(OneFigure, AReplayedRecordingIsTheSameSvg) {
    ASSERT_EQ(m_zenro.Run({"replay", "a.rec", "b.svg"}).status, 0);
    EXPECT_EQ(ReadFile(m_zenro / "a.svg"), ReadFile(m_zenro / "b.svg"));
}

}  // namespace
