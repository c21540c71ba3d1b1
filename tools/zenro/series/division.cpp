#include "tools/zenro/series/division.h"

#include <algorithm>
#include <cmath>
#include <numeric>

#include "tools/kit/angles.h"
#include "tools/kit/text.h"
#include "tools/kit/tool_host.h"
#include "tools/kit/translation.h"
#include "tools/zenro/coord/zones.h"
#include "tools/zenro/store/box_tree.h"
#include "zenromath/geodesy.h"

namespace zm::tool {
namespace {

constexpr double kMostPlanned = 2.0e6;  // sheets of a plan
constexpr double kTouch = 1e-4;         // metres: sheets that share no more than their border do not share ground
constexpr double kTouchDegrees = 1e-9;
constexpr int kSteps = 8;  // pieces of a side

// Seconds of a sheet: the start, and each feature of each output. docs/series.md has the measurements.
constexpr double kSheetSeconds = 0.08, kOutputSeconds = 0.03, kFeatureSeconds = 40e-6;

Chain Densified(const Chain& ring) {
    Chain dense;
    for (std::size_t i = 0; i + 1 < ring.size(); ++i)
        for (int k = 0; k < kSteps; ++k) {
            const double t = static_cast<double>(k) / kSteps;
            dense.x.push_back(ring.x[i] + t * (ring.x[i + 1] - ring.x[i]));
            dense.y.push_back(ring.y[i] + t * (ring.y[i + 1] - ring.y[i]));
        }
    dense.x.push_back(ring.x.back());
    dense.y.push_back(ring.y.back());
    return dense;
}

void ToDegrees(const TargetPlane& plane, Chain& chain) {
    for (std::size_t i = 0; i < chain.size(); ++i) {
        double latitude = 0.0, longitude = 0.0;
        InverseOfForward(plane.selector, chain.y[i], chain.x[i] - plane.eastOffset, latitude, longitude);
        chain.x[i] = plane.meridian + longitude / kDegree;
        chain.y[i] = latitude / kDegree;
    }
}

void ToPlane(const TargetPlane& plane, Chain& chain) {
    for (std::size_t i = 0; i < chain.size(); ++i) {
        double north = 0.0, east = 0.0, convergence = 0.0;
        forward(plane.selector, chain.y[i] * kDegree, (chain.x[i] - plane.meridian) * kDegree, &north, &east,
                &convergence);
        chain.x[i] = east + plane.eastOffset;
        chain.y[i] = north;
    }
}

Chain RingOf(const Box& b) {
    return {{b.x1, b.x2, b.x2, b.x1, b.x1}, {b.y1, b.y1, b.y2, b.y2, b.y1}};
}

Box BoxOfArea(const Shape& area) {
    return BoxOf(area.chains.front());
}

[[noreturn]] void Refused(sheets::Refusal refusal, const std::string& what) {
    throw Failure(kUsage, Phrase("{0}: no sheets ({1}); check --scale, --division, --origin and --within.", what,
                                 Translated(sheets::NameOf(refusal))));
}

// Walks over the cells of a box, and makes a sheet of each that shares ground with the area.
template <class Make>
std::vector<PlanSheet> Walk(const Shape& area, const Box& first, double touch, const Make& make) {
    const Box whole = BoxOfArea(area);
    const double w = first.x2 - first.x1, h = first.y2 - first.y1;
    const double columns = std::max(1.0, std::ceil((whole.x2 - first.x1 - touch) / w)),
                 rows = std::max(1.0, std::ceil((whole.y2 - first.y1 - touch) / h));
    if (!(columns * rows <= kMostPlanned))
        throw Failure(kUsage,
                      Phrase("the area would have more than two million sheets; give --within, or a smaller scale."));
    std::vector<PlanSheet> sheets;
    for (double row = rows - 1; row >= 0; --row)
        for (double column = 0; column < columns; ++column) {
            CheckStop();
            const double x = first.x1 + (column + 0.5) * w, y = first.y1 + (row + 0.5) * h;
            if (Touches(area, Box{x - w / 2 + touch, y - h / 2 + touch, x + w / 2 - touch, y + h / 2 - touch}))
                sheets.push_back(make(x, y));
        }
    return sheets;
}

std::vector<PlanSheet> Corners(const DivisionOptions& o, const Shape& area, const TargetPlane& plane) {
    // The numbers of corners have no zone.
    const double zone = plane.zone * kZone;
    const Box whole = BoxOfArea(area);
    std::string number;
    sheets::PlaneBox b;
    sheets::Refusal refusal = sheets::CornerNumber(o.grid, whole.y1, whole.x1 - zone, number);
    if (refusal == sheets::Refusal::none) refusal = sheets::ReadCorner(o.grid, number, b);
    if (refusal != sheets::Refusal::none) Refused(refusal, "--division");
    return Walk(area, Box{b.west + zone, b.south, b.east + zone, b.north}, kTouch, [&](double x, double y) {
        PlanSheet sheet;
        sheets::Refusal bad = sheets::CornerNumber(o.grid, y, x - zone, sheet.number);
        if (bad == sheets::Refusal::none) bad = sheets::ReadCorner(o.grid, sheet.number, b);
        if (bad == sheets::Refusal::none) bad = sheets::CornerNeighbours(o.grid, sheet.number, sheet.neighbours);
        if (bad != sheets::Refusal::none) Refused(bad, "--division");
        sheet.box = {b.west + zone, b.south, b.east + zone, b.north};
        sheet.outline = RingOf(sheet.box);
        if (plane.geodetic) {
            sheet.outline = Densified(sheet.outline);
            ToDegrees(plane, sheet.outline);
        }
        return sheet;
    });
}

std::vector<PlanSheet> Trapezoids(const DivisionOptions& o, Shape area, const TargetPlane& plane) {
    if (!plane.geodetic)
        throw Failure(
            kUsage,
            Phrase("--division graticule: the data names no coordinate system; give --source, or another division."));
    for (Chain& ring : area.chains) {
        ring = Densified(ring);
        ToDegrees(plane, ring);
    }
    const Box whole = BoxOfArea(area);
    const int scale = static_cast<int>(o.scale);
    std::string number;
    sheets::GraticuleSheet g;
    sheets::Refusal refusal = sheets::GraticuleNumber(whole.y1, whole.x1, scale, o.style, number);
    if (refusal == sheets::Refusal::none) refusal = sheets::ReadGraticule(number, g);
    if (refusal != sheets::Refusal::none) Refused(refusal, "--division graticule");
    return Walk(area, Box{g.west, g.south, g.east, g.north}, kTouchDegrees, [&](double longitude, double latitude) {
        PlanSheet sheet;
        sheets::Refusal bad = sheets::GraticuleNumber(latitude, longitude, scale, o.style, sheet.number);
        if (bad == sheets::Refusal::none) bad = sheets::ReadGraticule(sheet.number, g);
        if (bad == sheets::Refusal::none) bad = sheets::GraticuleNeighbours(sheet.number, sheet.neighbours);
        if (bad != sheets::Refusal::none) Refused(bad, "--division graticule");
        sheet.outline = Densified(RingOf(Box{g.west, g.south, g.east, g.north}));
        Chain there = sheet.outline;
        ToPlane(plane, there);
        sheet.box = BoxOf(there);
        return sheet;
    });
}

// Along a Hilbert curve over the middles: what is near on the ground is near in the list.
void OrderByPlace(std::vector<PlanSheet>& sheets) {
    Box all;
    for (const PlanSheet& s : sheets) all.Add(s.box);
    const auto cell = [](double value, double low, double high) {
        return high > low ? static_cast<std::uint32_t>(std::clamp((value - low) / (high - low), 0.0, 1.0) * 65535.0)
                          : 0u;
    };
    const auto along = [&](const PlanSheet& s) {
        return AlongHilbert(cell((s.box.x1 + s.box.x2) / 2, all.x1, all.x2),
                            cell((s.box.y1 + s.box.y2) / 2, all.y1, all.y2));
    };
    std::stable_sort(sheets.begin(), sheets.end(),
                     [&](const PlanSheet& a, const PlanSheet& b) { return along(a) < along(b); });
}

}  // namespace

std::vector<PlanSheet> Divide(const DivisionOptions& options, const Source& source) {
    Shape area = options.area;
    area.kind = GeometryKind::area;
    if (area.chains.empty()) {
        const Box box = source.DataBox();
        if (box.empty()) throw Failure(kFailed, Phrase("the data holds no features with a place; give --within."));
        area.chains.push_back(RingOf(box));
    }
    const TargetPlane& plane = source.plane();
    const Box box = BoxOfArea(area);
    if (plane.zone > 0 && box.x2 < kZone)
        throw Failure(kUsage,
                      Phrase("--within: its eastings lack the number of the zone, which comes first here: {0} for {1}.",
                             Fixed(plane.zone * kZone + box.x1, 0), Fixed(box.x1, 0)));
    std::vector<PlanSheet> sheets =
        options.graticule ? Trapezoids(options, std::move(area), plane) : Corners(options, area, plane);
    OrderByPlace(sheets);
    return sheets;
}

void NameSheets(const std::vector<PlaceName>& places, std::vector<PlanSheet>& sheets) {
    std::vector<Box> boxes;
    boxes.reserve(sheets.size());
    for (const PlanSheet& s : sheets) boxes.push_back(s.box);
    const BoxTree tree(boxes);
    for (const PlaceName& place : places)
        for (const std::uint32_t i : tree.Within(Box{place.x, place.y, place.x, place.y})) {
            // A sheet owns its south and its west border.
            if (place.x < boxes[i].x2 && place.y < boxes[i].y2 && sheets[i].name.empty()) sheets[i].name = place.name;
        }
}

void EstimateCosts(Source& source, std::size_t outputs, std::vector<PlanSheet>& sheets) {
    std::vector<Box> boxes;
    boxes.reserve(sheets.size());
    for (const PlanSheet& s : sheets) boxes.push_back(s.box);
    const std::vector<long long> counts = source.CountIn(boxes);
    for (std::size_t i = 0; i < sheets.size(); ++i) {
        sheets[i].features = counts[i];
        const double count = static_cast<double>(counts[i]), forms = static_cast<double>(outputs);
        sheets[i].cost = kSheetSeconds + forms * (kOutputSeconds + kFeatureSeconds * count);
    }
}

}  // namespace zm::tool
