// Sheets of the graticule: a frame of meridians and parallels, its corners and minutes, its grid.
#include <gtest/gtest.h>

#include <cmath>
#include <sstream>

#include "tests/support/recorded_numbers.h"
#include "tests/zenro/program.h"
#include "zenromath/geodesy.h"

namespace {

using namespace zm::test;

constexpr double kDegree = 3.141592653589793 / 180.0;

class GraticuleSheetFrame : public testing::Test {
 protected:
    // A path across a sheet, in longitude and latitude.
    void Draw(const std::string& number, const std::string& coordinates, std::vector<std::string> more = {}) {
        m_zenro.File(
            "in.geojson",
            "{\"type\":\"FeatureCollection\",\"crs\":{\"type\":\"name\",\"properties\":{\"name\":"
            "\"urn:ogc:def:crs:EPSG::4490\"}},\"features\":[{\"type\":\"Feature\",\"properties\":{\"name\":\"n\"},"
            "\"geometry\":{\"type\":\"LineString\",\"coordinates\":[" +
                coordinates + "]}}]}");
        m_zenro.File("r.rules", "* -> layer 250, symbol 250\n");
        std::vector<std::string> arguments = {"draw", "in.geojson", "--rules", "./r.rules", "--number",   number,
                                              "-o",   "a.rec",      "-o",      "a.svg",     "--overwrite"};
        arguments.insert(arguments.end(), more.begin(), more.end());
        const Outcome r = m_zenro.Run(arguments);
        ASSERT_EQ(r.status, 0) << r.err;
        m_rec = ReadFile(m_zenro / "a.rec");
        m_svg = ReadFile(m_zenro / "a.svg");
    }
    std::vector<std::vector<double>> Strokes() const {
        std::vector<std::vector<double>> strokes;
        std::istringstream lines(m_rec);
        for (std::string line; std::getline(lines, line);) {
            const std::vector<double> n = NumbersOf(line, "Line2");
            if (n.size() == 4) strokes.push_back(n);
        }
        return strokes;
    }
    // Whether strokes lie along a straight from end to end, within a millimetre of ground.
    bool HasStraight(double x1, double y1, double x2, double y2) const {
        const double length = std::hypot(x2 - x1, y2 - y1);
        double covered = 0.0;
        for (const auto& s : Strokes()) {
            const auto off = [&](double x, double y) {
                return std::fabs((x2 - x1) * (y - y1) - (y2 - y1) * (x - x1)) / length;
            };
            const auto at = [&](double x, double y) { return ((x - x1) * (x2 - x1) + (y - y1) * (y2 - y1)) / length; };
            if (off(s[0], s[1]) > 0.02 || off(s[2], s[3]) > 0.02) continue;
            const double a = at(s[0], s[1]), b = at(s[2], s[3]);
            if (std::min(a, b) < -0.02 || std::max(a, b) > length + 0.02) continue;
            covered += std::fabs(b - a);
        }
        return covered > length - 0.1;
    }
    static void Corner(double latitude, double longitude, double meridian, int zone, double& x, double& y) {
        double convergence = 0.0;
        forward(3, latitude * kDegree, (longitude - meridian) * kDegree, &y, &x, &convergence);
        x += 500000.0 + zone * 1e6;
    }
    Program m_zenro;
    std::string m_rec, m_svg;
};

// J50G015010: 39°22'30" to 39°25', 114°33'45" to 114°37'30", zone 38 of 3 degrees.
TEST_F(GraticuleSheetFrame, ItsNeatLineRunsAlongMeridiansAndParallels) {
    Draw("J50G015010", "[114.58,39.38],[114.61,39.41]");
    double x[4], y[4];
    const double latitudes[] = {39.375, 39.375, 39.0 + 25.0 / 60.0, 39.0 + 25.0 / 60.0};
    const double longitudes[] = {114.5625, 114.625, 114.625, 114.5625};
    for (int i = 0; i < 4; ++i) Corner(latitudes[i], longitudes[i], 114.0, 38, x[i], y[i]);
    EXPECT_TRUE(HasStraight(x[1], y[1], x[2], y[2])) << "the eastern meridian";
    EXPECT_TRUE(HasStraight(x[3], y[3], x[0], y[0])) << "the western meridian";
    EXPECT_GT(x[0] - x[3], 10.0);  // it is no rectangle: the meridian leans by the convergence
    double lowest = 1e9;
    for (const auto& s : Strokes()) lowest = std::min({lowest, s[1], s[3]});
    EXPECT_FALSE(HasStraight(std::min(x[0], x[3]), y[0], std::max(x[1], x[2]), y[0])) << "the box around it";
}

TEST_F(GraticuleSheetFrame, ItsCornersHaveLatitudeAndLongitude) {
    Draw("J50G015010", "[114.58,39.38],[114.61,39.41]", {"--jobs", "1"});
    EXPECT_EQ(Count(m_svg, ">39<"), 4) << "each corner's degrees of latitude";
    EXPECT_GE(Count(m_svg, ">114<"), 4);  // and in the note of the central meridian
    EXPECT_EQ(Count(m_svg, ">33'45"), 2);
    EXPECT_EQ(Count(m_svg, ">37'30"), 2);
    EXPECT_EQ(Count(m_svg, ">22&#39;<") + Count(m_svg, ">22'<") + Count(m_svg, ">22&apos;<"), 2);
    EXPECT_EQ(Count(m_svg, ">30&quot;<") + Count(m_svg, ">30\"<"), 2);
}

TEST_F(GraticuleSheetFrame, HasTheNumbersAroundItAndGridInKilometres) {
    Draw("J50G015010", "[114.58,39.38],[114.61,39.41]", {"--margins", m_zenro.File("m.txt", "接图表 = 是\n")});
    for (const char* number : {"J50G014009", "J50G014010", "J50G014011", "J50G015009", "J50G015011", "J50G016009",
                               "J50G016010", "J50G016011", "J50G015010"})
        EXPECT_EQ(Count(m_svg, ">" + std::string(number) + "<"), 1) << number;
    EXPECT_GE(Count(m_svg, ">4361<"), 1);  // the first whole kilometre of the northing
    EXPECT_GE(Count(m_svg, ">38549<"), 1);
}

TEST_F(GraticuleSheetFrame, LabelsKeepInsideIt) {
    // Near the north-west corner the box of the sheet reaches beyond the western meridian.
    m_zenro.File("in.geojson",
                 "{\"type\":\"FeatureCollection\",\"crs\":{\"type\":\"name\",\"properties\":{\"name\":"
                 "\"urn:ogc:def:crs:EPSG::4490\"}},\"features\":[{\"type\":\"Feature\",\"properties\":{},\"geometry\":"
                 "{\"type\":\"Point\",\"coordinates\":[114.5626,39.4]}}]}");
    m_zenro.File("r.rules", "* -> symbol 17, note M, label \"Northwest\"\n");
    ASSERT_EQ(
        m_zenro.Run({"draw", "in.geojson", "--rules", "./r.rules", "--number", "J50G015010", "-o", "a.rec"}).status, 0);
    double x = 0.0, y = 0.0;
    Corner(39.4, 114.5625, 114.0, 38, x, y);
    std::istringstream lines(ReadFile(m_zenro / "a.rec"));
    int texts = 0;
    for (std::string line; std::getline(lines, line);) {
        if (line.find("Northwest") == std::string::npos) continue;
        ++texts;
        double left = 0.0;
        ASSERT_EQ(std::sscanf(line.c_str(), "Text:%*d:%lf", &left), 1) << line;
        EXPECT_GT(left, x);
    }
    EXPECT_EQ(texts, 1);
}

}  // namespace
