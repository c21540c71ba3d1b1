#include "tools/symbols/samples.h"

#include <algorithm>
#include <cmath>

#include "zenromath/draw.h"
#include "zenromath/symbol.h"

namespace zm::tool::symbols {
namespace {

constexpr int kRoom = 4000;  // points that PROCESSALL may make of a line

const SamplePoints kStraight = {{-15.3, 0.0}, {15.3, 0.0}};
const SamplePoints kSquare = {{-8, -8}, {8, -8}, {8, 8}, {-8, 8}, {-8, -8}};

void DrawAlong(const SamplePoints& points, int code) {
    PointArrays a(points);
    PROCESSALL(a.n, a.x.data(), a.y.data(), 1, code);
}

// A graphic symbol where a sheet has it: on a line, turned to its course, or inside an area.
void DrawGraphic(const SamplePoints* around, bool along, int code) {
    if (around == nullptr) return static_cast<void>(insert(0.0, 0.0, 0.0, code));
    for (std::size_t i = 1; i < around->size(); ++i)
        TqDC->line((*around)[i - 1].x, (*around)[i - 1].y, (*around)[i].x, (*around)[i].y);
    if (!along) return static_cast<void>(insert(0.0, 0.0, 0.0, code));
    const OrnamentPoint &a = (*around)[1], &b = (*around)[2];
    insert((a.x + b.x) / 2.0, (a.y + b.y) / 2.0, std::atan2(b.y - a.y, b.x - a.x), code);
}

}  // namespace

const SamplePoints& LineSample() {
    // Its lengths are no whole numbers: where a token is exactly as long as what is left of a segment, that rest stays
    // undrawn.
    static const SamplePoints points = {{-31, -4}, {-10.63, -4}, {-0.81, 4}, {9.21, -4}, {31, -4}};
    return points;
}

const SamplePoints& AreaSample() {
    static const SamplePoints points = {{-32, -17}, {32, -17}, {32, 17},  {4, 17},   {4, 9},
                                        {-8, 9},    {-8, 17},  {-32, 17}, {-32, -17}};
    return points;
}

SamplePoints Centred(const SamplePoints& points) {
    double left = points[0].x, right = left, low = points[0].y, high = low;
    for (const OrnamentPoint& p : points) {
        left = std::min(left, p.x);
        right = std::max(right, p.x);
        low = std::min(low, p.y);
        high = std::max(high, p.y);
    }
    SamplePoints centred;
    for (const OrnamentPoint& p : points) centred.push_back({p.x - (left + right) / 2.0, p.y - (low + high) / 2.0});
    return centred;
}

PointArrays::PointArrays(const SamplePoints& points) : n(static_cast<int>(points.size())), x(kRoom), y(kRoom) {
    for (std::size_t i = 0; i < points.size(); ++i) {
        x[i] = points[i].x;
        y[i] = points[i].y;
    }
}

void DrawSample(const Symbol& symbol, Sample sample) {
    const SamplePoints* around = sample == Sample::line   ? &LineSample()
                                 : sample == Sample::area ? &AreaSample()
                                                          : nullptr;
    if (symbol.kind == "G") return DrawGraphic(around, sample == Sample::line, symbol.code);
    if (symbol.kind == "Y" && symbol.number >= 1 && symbol.number <= kOrnaments)
        return DrawAlong(Centred(Ornaments()[static_cast<std::size_t>(symbol.number) - 1].example), symbol.code);
    if (around == nullptr) around = symbol.kind == "H" ? &kSquare : &kStraight;
    DrawAlong(*around, symbol.code);
}

}  // namespace zm::tool::symbols
