#include "tools/zenro/coord/transformation.h"

#include <cmath>
#include <sstream>

#include "runtime/text/numbers.h"
#include "tools/kit/angles.h"
#include "tools/kit/text.h"
#include "tools/kit/translation.h"

namespace zm::tool {
namespace {

std::string ToDegrees(const Side& side, double first, double second, double& latitude, double& longitude) {
    if (side.kind == PointKind::plane) return PlaneToDegrees(side.plane, first, second, latitude, longitude);
    latitude = first;
    longitude = second;
    return {};
}

std::string FromDegrees(const Side& side, double latitude, double longitude, double& first, double& second) {
    if (side.kind == PointKind::plane) return DegreesToPlane(side.plane, latitude, longitude, first, second);
    first = latitude;
    second = longitude;
    return {};
}

int SelectorOf(const Side& side) {
    return side.plane.family.selector();
}

std::array<double, 3> Centred(const Side& side, const double position[3], const std::string& name) {
    double latitude = 0.0, longitude = 0.0;
    const std::string wrong = ToDegrees(side, position[0], position[1], latitude, longitude);
    if (!wrong.empty()) throw Failure(kNoInput, Phrase("common point {0}: {1}.", name, wrong));
    return EarthCentred(SelectorOf(side), latitude, longitude, position[2]);
}

std::string ParameterLine(const SevenParameters& p) {
    return numbers::Text("# seven parameters, position vector: %.4f,%.4f,%.4f m, %.6f,%.6f,%.6f arc seconds, %.6f ppm",
                         p.shift[0], p.shift[1], p.shift[2], p.rotation[0], p.rotation[1], p.rotation[2], p.ppm);
}

std::string ParameterLine(const FourParameters& p) {
    return numbers::Text("# four parameters: north %.4f m, east %.4f m, %.6f arc seconds, %.6f ppm", p.shiftNorth,
                         p.shiftEast, p.rotation, p.ppm);
}

}  // namespace

void Transformation::Check() const {
    if (four && seven) throw Failure(kUsage, Phrase("give four parameters or seven, not both."));
    if (four && (from.kind != PointKind::plane || to.kind != PointKind::plane))
        throw Failure(
            kUsage, Phrase("four parameters go from a plane to a plane; give --from-form plane and --to-form plane."));
    if (!four && !seven && SelectorOf(from) != SelectorOf(to))
        throw Failure(kUsage, Phrase("from the {0} family to the {1} family the datum changes; give --seven, --four, "
                                     "or --common with points that are known in both.",
                                     from.plane.family.name, to.plane.family.name));
}

std::string Transformation::Apply(double& first, double& second, double& height) const {
    if (four) {
        four->Apply(first, second);
        return {};
    }
    double latitude = 0.0, longitude = 0.0;
    std::string wrong = ToDegrees(from, first, second, latitude, longitude);
    if (!wrong.empty()) return wrong;
    if (seven) {
        const bool hasHeight = std::isfinite(height);
        double other = 0.0;
        FromEarthCentred(SelectorOf(to),
                         seven->Apply(EarthCentred(SelectorOf(from), latitude, longitude, hasHeight ? height : 0.0)),
                         latitude, longitude, other);
        if (hasHeight && ellipsoidalHeights) height = other;
    }
    return FromDegrees(to, latitude, longitude, first, second);
}

std::vector<CommonPosition> ReadCommonPoints(const std::string& file, const Transformation& sides, AngleForm angles) {
    constexpr std::size_t kLargest = 64u << 20;
    std::string text = ReadWholeFile(file, kLargest);
    if (text.compare(0, 3, "\xEF\xBB\xBF") == 0) text.erase(0, 3);
    std::istringstream lines(text);
    std::vector<CommonPosition> points;
    std::string line;
    for (int number = 1; std::getline(lines, line); ++number) {
        const std::string whole = Trim(line);
        if (whole.empty() || whole[0] == '#') continue;
        std::vector<std::string> words;
        for (std::size_t at = 0; (at = whole.find_first_not_of(" \t,;", at)) != std::string::npos;) {
            const std::size_t end = std::min(whole.find_first_of(" \t,;", at), whole.size());
            words.push_back(whole.substr(at, end - at));
            at = end;
        }
        const std::string where = file + ":" + std::to_string(number) + ": ";
        if (words.size() != 5 && words.size() != 7)
            throw Failure(
                kNoInput,
                Phrase("{0}a common point has five columns (no, position, position) or seven with heights, not {1}.",
                       where, words.size()));
        CommonPosition point;
        point.name = words[0];
        point.hasHeights = words.size() == 7;
        const std::size_t each = point.hasHeights ? 3 : 2;
        for (std::size_t i = 0; i < 2 * each; ++i) {
            const Side& side = i < each ? sides.from : sides.to;
            double& value = (i < each ? point.from : point.to)[i % each];
            const std::string& word = words[1 + i];
            bool good = false;
            if (side.kind == PointKind::geographic && i % each < 2) {
                std::string_view rest = word;
                const AngleText angle = TakeAngle(rest, angles);
                good = angle.wrong.empty() && rest.empty();
                value = angle.degrees;
            } else {
                good = ReadReal(word, value);
            }
            if (!good) throw Failure(kNoInput, Phrase("{0}\"{1}\" is no number.", where, word));
        }
        points.push_back(point);
    }
    if (points.empty()) throw Failure(kNoInput, Phrase("{0}: holds no common point.", file));
    return points;
}

std::vector<std::string> EstimateFrom(const std::vector<CommonPosition>& points, bool sevenParameters,
                                      Transformation& transformation) {
    std::vector<CommonPoint> pairs;
    for (const CommonPosition& p : points) {
        CommonPoint pair;
        pair.name = p.name;
        if (sevenParameters) {
            pair.from = Centred(transformation.from, p.from, p.name);
            pair.to = Centred(transformation.to, p.to, p.name);
        } else {
            pair.from = {p.from[0], p.from[1], 0.0};
            pair.to = {p.to[0], p.to[1], 0.0};
        }
        pairs.push_back(pair);
    }
    std::vector<std::string> lines;
    const std::size_t least = sevenParameters ? 3 : 2;
    if (sevenParameters) {
        SevenParameters seven;
        if (!Estimate(pairs, seven))
            throw Failure(
                kFailed,
                Phrase("seven parameters need at least three common points that do not lie on one line; {0} were read.",
                       points.size()));
        transformation.seven = seven;
        lines.push_back(ParameterLine(seven));
    } else {
        FourParameters four;
        if (!Estimate(pairs, four))
            throw Failure(kFailed,
                          Phrase("four parameters need at least two common points at different places; {0} were read.",
                                 points.size()));
        transformation.four = four;
        lines.push_back(ParameterLine(four));
    }
    transformation.Check();
    double squares = 0.0;
    for (const CommonPosition& p : points) {
        double first = p.from[0], second = p.from[1], height = p.from[2];
        const std::string wrong = transformation.Apply(first, second, height);
        if (!wrong.empty()) throw Failure(kFailed, Phrase("common point {0}: {1}.", p.name, wrong));
        double north = p.to[0] - first, east = p.to[1] - second;
        if (transformation.to.kind == PointKind::geographic) {
            constexpr double kMetres = 6371000.0 * kDegree;  // of a degree, for residuals only
            east *= kMetres * std::cos(first * kDegree);
            north *= kMetres;
        }
        squares += north * north + east * east;
        lines.push_back(numbers::Text("# residual of %s: north %.1f mm, east %.1f mm", p.name.c_str(), north * 1000.0,
                                      east * 1000.0));
    }
    const auto n = static_cast<double>(points.size());
    lines.push_back(
        points.size() > least
            ? numbers::Text("# mean residual %.1f mm of %zu common points", std::sqrt(squares / n) * 1000.0,
                            points.size())
            : numbers::Text("# %zu common points suffice just so: no residual shows a wrong one", points.size()));
    return lines;
}

}  // namespace zm::tool
