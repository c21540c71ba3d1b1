#include "tools/zenro/map/road_network.h"

#include <ogr_geometry.h>

#include <algorithm>
#include <atomic>
#include <cmath>
#include <functional>
#include <future>
#include <memory>
#include <set>
#include <thread>
#include <tuple>
#include <utility>
#include <vector>

#include "runtime/uses.h"
#include "tools/zenro/map/road_band.h"
#include "tools/zenro/map/shapes.h"

namespace zm::tool {
namespace {

constexpr double kSame = 0.02;     // metres: ends that are nearer meet
constexpr double kShrink = 0.003;  // metres that an area gives way, so that an edge in common is drawn by one of both
constexpr double kCap = 0.01;      // metres to both sides of an end that is open
constexpr double kBeside = 0.2;    // millimetres kept clear beside a bridge
constexpr double kLeastPassage = 1.0;  // millimetres in a building
constexpr double kWing = 1.0;          // millimetres: wings of bridges and portals, at 45 degrees

using Geometry = std::unique_ptr<OGRGeometry>;

std::pair<long long, long long> KeyOf(double x, double y) {
    return {std::llround(x / kSame), std::llround(y / kSame)};
}

Chain ChainOf(const OGRSimpleCurve& curve) {
    Chain chain;
    for (int i = 0; i < curve.getNumPoints(); ++i) {
        chain.x.push_back(curve.getX(i));
        chain.y.push_back(curve.getY(i));
    }
    return chain;
}

// All lines of a geometry.
void Collect(const OGRGeometry* geometry, std::vector<Chain>& lines) {
    if (geometry == nullptr) return;
    const OGRwkbGeometryType type = wkbFlatten(geometry->getGeometryType());
    if (type == wkbLineString || type == wkbLinearRing) {
        lines.push_back(ChainOf(*geometry->toSimpleCurve()));
    } else if (OGR_GT_IsSubClassOf(type, wkbGeometryCollection)) {
        for (const OGRGeometry* part : *geometry->toGeometryCollection()) Collect(part, lines);
    }
}

void Collect(const OGRGeometry* geometry, std::vector<Shape>& areas) {
    if (geometry == nullptr) return;
    const OGRwkbGeometryType type = wkbFlatten(geometry->getGeometryType());
    if (type == wkbPolygon) {
        Shape area;
        area.kind = GeometryKind::area;
        for (const OGRLinearRing* ring : *geometry->toPolygon()) area.chains.push_back(ChainOf(*ring));
        if (!area.chains.empty()) areas.push_back(std::move(area));
    } else if (OGR_GT_IsSubClassOf(type, wkbGeometryCollection)) {
        for (const OGRGeometry* part : *geometry->toGeometryCollection()) Collect(part, areas);
    }
}

std::vector<const OGRGeometry*> PolygonsOf(const OGRGeometry& geometry) {
    const OGRwkbGeometryType type = wkbFlatten(geometry.getGeometryType());
    if (type == wkbPolygon) return {&geometry};
    std::vector<const OGRGeometry*> polygons;
    if (OGR_GT_IsSubClassOf(type, wkbGeometryCollection) != FALSE)
        for (const OGRGeometry* part : *geometry.toGeometryCollection())
            for (const OGRGeometry* polygon : PolygonsOf(*part)) polygons.push_back(polygon);
    return polygons;
}

using Place = std::pair<long long, long long>;

Geometry Union(const OGRMultiPolygon& bands) {
    return Geometry(bands.IsEmpty() != FALSE ? nullptr : bands.UnionCascaded());
}

void Subtract(Geometry& from, const OGRGeometry* what) {
    if (from != nullptr && what != nullptr && what->IsEmpty() == FALSE) from = Geometry(from->Difference(what));
}

using Works = std::vector<std::function<void()>>;

// Does pieces of work that do not need each other, on all cores.
void DoAll(const Works& works) {
    std::atomic<std::size_t> next = 0;
    const auto doSome = [&] {
        for (std::size_t i; (i = next++) < works.size();) works[i]();
    };
    std::vector<std::future<void>> others;
    const std::size_t cores = std::clamp(std::thread::hardware_concurrency(), 1U, 16U);
    while (others.size() + 1 < std::min(cores, works.size())) others.push_back(std::async(std::launch::async, doSome));
    uses::Count(others.empty() ? uses::workAlone : uses::workShared, works.size());
    doSome();
    for (std::future<void>& other : others) other.get();
}

// One end of a road: its place, and the direction in which the road would go on.
struct RoadEnd {
    double x, y, ux, uy;
    Place place() const { return KeyOf(x, y); }
    // So far ahead and to the left.
    std::pair<double, double> At(double ahead, double left) const {
        return {x + ux * ahead - uy * left, y + uy * ahead + ux * left};
    }
};

}  // namespace

// The edges of one network, in the order of its storeys.
class RoadBuilder {
 public:
    RoadBuilder(RoadNetwork& network, double millimetre) : m_network(network), m_millimetre(millimetre) {}

    void Build() {
        for (const RoadNetwork::Road& road : m_network.m_roads) {
            for (std::size_t i = 0; i < road.centre.size(); ++i) {
                Meeting& here = m_meetings[KeyOf(road.centre.x[i], road.centre.y[i])][road.storey];
                ++here.corners;
                here.widest = std::max(here.widest, road.width);
            }
        }
        for (const RoadNetwork::Road& road : m_network.m_roads) AddRoad(road);
        UniteBands();
        FindHidden();
        TakeOutlines();
    }

 private:
    using Road = RoadNetwork::Road;
    struct Meeting {
        int corners = 0;
        double widest = 0.0;  // of its roads
    };
    // The bands of a rule in a storey as one.
    struct Area {
        Geometry whole;
        Geometry shrunk;   // a little less
        Geometry outline;  // as it is drawn
    };
    struct Storey {
        std::map<const Rule*, OGRMultiPolygon> bands;
        std::set<std::tuple<Place, const Rule*, double>> round;  // ends of bands, with half their width
        std::map<const Rule*, Area> areas;
        OGRMultiPolygon wide;         // bridges and what is kept clear beside them
        OGRMultiPolygon caps;         // over ends that are open
        OGRMultiPolygon open;         // about the ends of bridges, where nothing is kept clear
        Geometry cover, closed, met;  // what hides outlines: storeys above, open ends, roads that bridges end at
    };

    static RoadEnd EndOf(const Chain& centre, bool last) {
        const std::size_t n = centre.size(), end = last ? n - 1 : 0;
        std::size_t before = last ? n - 2 : 1;
        const auto apart = [&] {
            return std::hypot(centre.x[end] - centre.x[before], centre.y[end] - centre.y[before]);
        };
        while (apart() < 1e-6 && before > 0 && before + 1 < n) before += last ? -1 : 1;
        const double d = std::max(apart(), 1e-9);
        return {centre.x[end], centre.y[end], (centre.x[end] - centre.x[before]) / d,
                (centre.y[end] - centre.y[before]) / d};
    }

    // Where another road of the storey begins, ends or passes a corner an end is round, so that bends at it are whole;
    // where one of another storey does, it is open.
    void AddRoad(const Road& road) {
        Storey& storey = m_of[road.storey];
        const double half = road.width / 2.0;
        OGRMultiPolygon& all = storey.bands[road.rule];
        AddBand(all, road.centre, half);
        if (road.storey > 0) AddBand(storey.wide, road.centre, half + kBeside * m_millimetre);
        for (const bool last : {false, true}) {
            const RoadEnd end = EndOf(road.centre, last);
            const std::map<int, Meeting>& here = m_meetings[end.place()];
            if (here.at(road.storey).corners > 1 && storey.round.insert({end.place(), road.rule, half}).second)
                AddDisc(all, end.x, end.y, half);
            if (here.size() == 1) continue;
            double inner = 0.0;  // half the width of what goes on
            for (const auto& [other, meeting] : here)
                if (other != road.storey) inner = std::max(inner, meeting.widest / 2.0);
            if (road.storey > 0) AddDisc(storey.open, end.x, end.y, std::hypot(half, inner) + m_millimetre);
            inner = std::min(inner, half) - kCap;
            AddRing(storey.caps,
                    {end.At(-kCap, inner), end.At(kCap, inner), end.At(kCap, -inner), end.At(-kCap, -inner)});
        }
    }

    // What covers the outlines of a storey: the bridges above it, for tunnels the roads on the ground too.
    Geometry CoverOf(int storey) const {
        OGRMultiPolygon cover;
        const auto add = [&](const OGRGeometry* geometry) {
            if (geometry == nullptr || geometry->IsEmpty() != FALSE) return;
            for (const OGRGeometry* part : PolygonsOf(*geometry)) cover.addGeometry(part);
        };
        for (const auto& [above, of] : m_of) {
            if (above <= std::max(storey, storey < 0 ? -1 : 0)) continue;
            for (const auto& [rule, area] : of.areas) add(area.whole.get());
            Geometry wide = Union(of.wide);
            Subtract(wide, Union(of.open).get());
            add(wide.get());
        }
        return Union(cover);
    }

    void UniteBands() {
        Works unions;
        for (auto& [number, storey] : m_of)
            for (auto& [rule, bands] : storey.bands)
                unions.emplace_back([&area = storey.areas[rule], &all = bands] {
                    area.whole = Union(all);
                    if (area.whole != nullptr) area.shrunk = Geometry(area.whole->Buffer(-kShrink, 2));
                });
        DoAll(unions);
        for (auto& [number, storey] : m_of)
            std::erase_if(storey.areas, [](const auto& area) { return area.second.whole == nullptr; });
    }

    void FindHidden() {
        Works works;
        for (auto& of : m_of)
            works.emplace_back([this, number = of.first, &storey = of.second] {
                storey.cover = CoverOf(number);
                storey.closed = Union(storey.caps);
                if (number > 0) storey.met = MetBelow(number);
            });
        DoAll(works);
    }

    void TakeOutlines() {
        Works works{[this] { TakeAreas(); }};
        for (auto& of : m_of)
            for (auto& area : of.second.areas)
                works.emplace_back([&storey = std::as_const(of.second), rule = area.first, &its = area.second] {
                    its.outline = OutlineOf(storey, rule);
                });
        DoAll(works);
        for (const auto& [number, storey] : m_of) {
            for (const auto& [rule, area] : storey.areas) {
                RoadEdges& edges = m_network.m_edges[rule];
                Collect(area.outline.get(), number == 0 ? edges.ground : number > 0 ? edges.bridges : edges.tunnels);
            }
            for (const Road& road : m_network.m_roads)
                if (road.storey == number) AddWings(road);
        }
    }

    static Geometry OutlineOf(const Storey& storey, const Rule* rule) {
        Geometry outline(storey.areas.at(rule).whole->Boundary());
        for (const auto& [other, its] : storey.areas) {
            if (other == rule || outline == nullptr) continue;
            // An edge in common stays with the greater road, which is drawn later.
            const bool greater = std::pair(rule->level, rule->line) > std::pair(other->level, other->line);
            Subtract(outline, (greater ? its.shrunk : its.whole).get());
        }
        for (const Geometry* hidden : {&storey.closed, &storey.cover, &storey.met}) Subtract(outline, hidden->get());
        return outline;
    }

    // The roads below that the bridges of a storey end at, and do not cross.
    Geometry MetBelow(int number) {
        std::set<Place> ends;
        for (const Road& road : m_network.m_roads)
            if (road.storey == number)
                for (const bool last : {false, true}) ends.insert(EndOf(road.centre, last).place());
        OGRMultiPolygon met;
        for (const Road& road : m_network.m_roads) {
            if (road.storey >= number || road.storey < 0) continue;
            const Chain& c = road.centre;
            for (std::size_t i = 1; i + 1 < c.size(); ++i)
                if (ends.count(KeyOf(c.x[i], c.y[i])) > 0)
                    AddBand(met, {{c.x[i - 1], c.x[i], c.x[i + 1]}, {c.y[i - 1], c.y[i], c.y[i + 1]}},
                            road.width / 2.0);
        }
        return Union(met);
    }

    // Wings where a bridge ends on lower ground, a portal where a tunnel comes out of it.
    void AddWings(const Road& road) {
        if (road.storey == 0) return;
        RoadEdges& edges = m_network.m_edges[road.rule];
        const double half = road.width / 2.0, wing = kWing * m_millimetre * std::sqrt(0.5);
        for (const bool last : {false, true}) {
            const RoadEnd end = EndOf(road.centre, last);
            const std::map<int, Meeting>& here = m_meetings[end.place()];
            if (here.at(road.storey).corners > 1 || PassesBelow(end, road.storey)) continue;
            const bool tunnel = road.storey < 0;
            if (tunnel ? here.rbegin()->first < 0 : here.begin()->first == road.storey) continue;
            std::vector<Chain>& to = tunnel ? edges.portals : edges.bridges;
            const auto line = [&](std::pair<double, double> a, std::pair<double, double> b) {
                to.push_back({{a.first, b.first}, {a.second, b.second}});
            };
            line(end.At(0.0, half), end.At(wing, half + wing));
            line(end.At(0.0, -half), end.At(wing, -half - wing));
            if (tunnel) line(end.At(0.0, half), end.At(0.0, -half));
        }
    }

    // True where an end lies on a road of another storey that goes on to both sides.
    bool PassesBelow(const RoadEnd& end, int storey) const {
        const Place place = end.place();
        for (const Road& road : m_network.m_roads) {
            if (road.storey == storey) continue;
            for (std::size_t i = 1; i + 1 < road.centre.size(); ++i)
                if (KeyOf(road.centre.x[i], road.centre.y[i]) == place) return true;
        }
        return false;
    }

    void TakeAreas() {
        OGRMultiPolygon all;
        for (const auto& [number, storey] : m_of) {
            if (number < 0) continue;
            for (const auto& [rule, area] : storey.areas)
                for (const OGRGeometry* part : PolygonsOf(*area.whole)) all.addGeometry(part);
            if (number == 0) continue;
            std::vector<Shape> decks;
            Collect(Union(storey.wide).get(), decks);
            for (Shape& deck : decks) m_network.m_decks.emplace_back(number, std::move(deck));
        }
        Collect(Union(all).get(), m_network.m_areas);
    }

    RoadNetwork& m_network;
    double m_millimetre;
    std::map<Place, std::map<int, Meeting>> m_meetings;  // of each storey at a place
    std::map<int, Storey> m_of;
};

void RoadNetwork::Add(const Chain& centre, double width, const Rule& rule, int storey) {
    if (centre.size() > 1 && width > 0.0) m_roads.push_back({centre, width, &rule, storey});
}

void RoadNetwork::Build(double millimetre) {
    RoadBuilder(*this, millimetre).Build();
}

std::vector<Shape> RoadNetwork::AreasWith(double beside) const {
    OGRMultiPolygon all;
    for (const Road& road : m_roads)
        if (road.storey >= 0) AddBand(all, road.centre, road.width / 2.0 + beside);
    std::vector<Shape> areas;
    Collect(&all, areas);
    return areas;
}

long RoadNetwork::KeepOff(const Masks& buildings, const Page& page) {
    Masks passages(page);
    long through = 0;
    for (const Road& road : m_roads) {
        if (road.storey != 0) continue;
        OGRMultiPolygon bands;
        for (const Chain& inside : buildings.Inside(road.centre))
            if (LengthOf(inside) > page.Ground(kLeastPassage)) AddBand(bands, inside, road.width / 2.0 + kSame);
        std::vector<Shape> areas;
        Collect(Union(bands).get(), areas);
        for (const Shape& area : areas) passages.Add(area);
        if (!areas.empty()) ++through;
    }
    for (auto& [rule, edges] : m_edges) {
        std::vector<Chain> ground;
        for (const Chain& edge : edges.ground) {
            for (Chain& open : buildings.Outside(edge)) ground.push_back(std::move(open));
            for (const Chain& inside : buildings.Inside(edge))
                for (Chain& side : passages.Inside(inside)) edges.tunnels.push_back(std::move(side));
        }
        edges.ground = std::move(ground);
    }
    return through;
}

std::vector<const Rule*> RoadNetwork::rules() const {
    std::vector<const Rule*> rules;
    for (const auto& [rule, edges] : m_edges) rules.push_back(rule);
    std::sort(rules.begin(), rules.end(), [](const Rule* a, const Rule* b) { return a->line < b->line; });
    return rules;
}

const RoadEdges& RoadNetwork::EdgesOf(const Rule& rule) const {
    static const RoadEdges kNone;
    const auto found = m_edges.find(&rule);
    return found != m_edges.end() ? found->second : kNone;
}

}  // namespace zm::tool
