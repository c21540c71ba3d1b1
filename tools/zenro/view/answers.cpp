#include "tools/zenro/view/answers.h"

#include <algorithm>
#include <cmath>
#include <map>

#include "runtime/text/gbk.h"
#include "tools/kit/text.h"
#include "tools/kit/tool_host.h"
#include "tools/zenro/coord/angle_text.h"
#include "tools/zenro/coord/measures.h"
#include "tools/zenro/map/explain.h"
#include "tools/zenro/map/shapes.h"
#include "zenromath/symbol.h"

namespace zm::tool {
namespace {

constexpr std::size_t kMostIdentified = 30;
constexpr int kSecondsDecimals = 3;

const char* NameOf(GeometryKind kind) {
    return kind == GeometryKind::point ? "point" : kind == GeometryKind::line ? "line" : "area";
}

// Where a hit comes in the list: points first, then lines, then areas by their size.
double RankOf(const Shape& shape) {
    return shape.kind == GeometryKind::point  ? -2.0
           : shape.kind == GeometryKind::line ? -1.0
                                              : std::fabs(TurnOf(shape.chains.front())) / 2.0;
}

Json RuleOf(const OpenedMap& map, const Use& use) {
    const Rule& rule = *use.rule;
    return {{"text", RuleText(map.rules, rule)},
            {"line", rule.line},
            {"condition", rule.condition.empty() ? "*" : rule.condition},
            {"section", rule.layerGlob},
            {"symbol", rule.symbol},
            {"layer", rule.layer},
            {"outline", rule.outline},
            {"note", NoteOfSymbol(rule.symbol > 0 ? rule.symbol : rule.outline)},
            {"label", gbk::ToUtf8(use.label)}};
}

Json HitOf(OpenedMap& map, std::size_t place, const Feature& feature, const Shape& shape) {
    const FeatureStore::Entry& entry = map.store.entry(place);
    Json hit = {{"where", feature.where},
                {"layer", map.store.layerName(entry.layer)},
                {"fid", entry.fid},
                {"kind", NameOf(shape.kind)},
                {"box", {entry.box.x1, entry.box.y1, entry.box.x2, entry.box.y2}}};
    hit["rules"] = Json::array();
    for (const Use* use : UsesOf(feature, shape.kind)) hit["rules"].push_back(RuleOf(map, *use));
    hit["fields"] = Json::array();
    for (const auto& [name, value] : map.source.FieldsOf(map.store.layerName(entry.layer), entry.fid))
        hit["fields"].push_back({name, value});
    Json outline = Json::array();
    for (const Chain& chain : shape.chains) {
        Json points = Json::array();
        for (std::size_t i = 0; i < chain.size(); ++i) points.push_back({chain.x[i], chain.y[i]});
        outline.push_back(std::move(points));
    }
    hit["outline"] = std::move(outline);
    if (shape.kind == GeometryKind::line) hit["length"] = LengthOf(shape.chains.front());
    if (shape.kind == GeometryKind::area) hit["area"] = AreaOf(shape);
    return hit;
}

}  // namespace

Json AboutMap(OpenedMap& map) {
    const auto box = [](const Box& b) { return Json{b.x1, b.y1, b.x2, b.y2}; };
    const TargetPlane& plane = map.source.plane();
    return {{"is", "ready"},
            {"features", map.store.size()},
            {"scale", map.scale},
            {"start", box(map.start)},
            {"data", box(map.data)},
            {"rotation", map.job.rotation},
            {"plane", plane.Describe()},
            {"planeChinese", plane.DescribeChinese()},
            {"geodetic", plane.geodetic},
            {"rules", map.job.rules.empty() ? std::string() : map.rules.path.string()},
            {"symbols", map.SymbolFile()},
            {"files", map.Files()}};
}

Json LayersOf(OpenedMap& map) {
    std::map<std::uint32_t, std::map<const Rule*, long>> counts;
    std::map<std::uint32_t, long> features;
    Feature feature;
    for (std::size_t i = 0; i < map.store.size(); ++i) {
        const std::uint32_t layer = map.store.entry(i).layer;
        map.store.Read(i, feature);
        ++features[layer];
        std::vector<const Rule*> met;
        for (const Shape& shape : feature.shapes)
            for (const Use* use : UsesOf(feature, shape.kind))
                if (std::find(met.begin(), met.end(), use->rule) == met.end()) met.push_back(use->rule);
        for (const Rule* rule : met) ++counts[layer][rule];
    }
    unsigned long* palette = nullptr;
    const int colours = Get_SysColor(palette);
    Json layers = Json::array();
    for (const auto& [layer, count] : features) {
        Json rules = Json::array();
        for (const auto& [rule, drawn] : counts[layer]) {
            const int colour = GetColorNo1(rule->layer);
            const unsigned long bgr = palette != nullptr && colour >= 0 && colour < colours ? palette[colour] : 0;
            const int code = rule->symbol > 0 ? rule->symbol : rule->outline > 0 ? rule->outline : rule->layer;
            rules.push_back({{"index", rule - map.rules.rules.data()},
                             {"line", rule->line},
                             {"condition", rule->condition.empty() ? "*" : rule->condition},
                             {"code", code},
                             {"note", NoteOfSymbol(code)},
                             {"count", drawn},
                             {"colour", {bgr & 0xFF, bgr >> 8 & 0xFF, bgr >> 16 & 0xFF}},
                             {"width", GetPenWidth(rule->layer) / 100.0}});
        }
        layers.push_back({{"index", layer}, {"name", map.store.layerName(layer)}, {"count", count}, {"rules", rules}});
    }
    return {{"layers", layers}};
}

Json Identify(OpenedMap& map, double x, double y, double reach) {
    struct Hit {
        double rank;
        std::size_t place, shape;
    };
    std::vector<Hit> hits;
    const Box around = Box{x, y, x, y}.Widened(reach);
    Feature feature;
    for (const std::uint32_t place : map.store.Within(around)) {
        CheckStop();
        if (map.hidden[place]) continue;
        map.store.Read(place, feature);
        for (std::size_t i = 0; i < feature.shapes.size(); ++i)
            if (!UsesOf(feature, feature.shapes[i].kind).empty() && Touches(feature.shapes[i], around)) {
                hits.push_back({RankOf(feature.shapes[i]), place, i});
                break;
            }
    }
    std::stable_sort(hits.begin(), hits.end(), [](const Hit& a, const Hit& b) { return a.rank < b.rank; });
    Json answer = {{"count", hits.size()}, {"hits", Json::array()}};
    for (std::size_t i = 0; i < std::min(hits.size(), kMostIdentified); ++i) {
        map.store.Read(hits[i].place, feature);
        answer["hits"].push_back(HitOf(map, hits[i].place, feature, feature.shapes[hits[i].shape]));
    }
    return answer;
}

Json Where(const OpenedMap& map, double x, double y) {
    double latitude = 0.0, longitude = 0.0;
    if (!map.ToDegrees(x, y, latitude, longitude)) return Json::object();
    const auto dms = [](double degrees, const char* letters) {
        return AngleAs(std::fabs(degrees), AngleForm::dms, kSecondsDecimals) + letters[degrees < 0.0 ? 1 : 0];
    };
    return {{"lat", latitude}, {"lon", longitude}, {"text", dms(latitude, "NS") + "  " + dms(longitude, "EW")}};
}

Json Measure(const OpenedMap& map, const std::vector<double>& xy) {
    Chain chain;
    std::vector<Point3D> degrees;
    bool known = map.source.plane().geodetic;
    for (std::size_t i = 0; i + 1 < xy.size(); i += 2) {
        chain.x.push_back(xy[i]);
        chain.y.push_back(xy[i + 1]);
        double latitude = 0.0, longitude = 0.0;
        known = known && map.ToDegrees(xy[i], xy[i + 1], latitude, longitude);
        degrees.push_back({longitude, latitude, 0.0});
    }
    Json answer = {{"points", chain.size()}, {"length", LengthOf(chain)}};
    const bool ring = chain.size() > 2;
    if (ring) {
        Chain closed = chain;
        closed.x.push_back(chain.x.front());
        closed.y.push_back(chain.y.front());
        answer["area"] = std::fabs(TurnOf(closed)) / 2.0;
        answer["perimeter"] = LengthOf(closed);
    }
    if (!known || !HasGeodesics()) return answer;
    const int selector = map.source.plane().selector;
    const Ellipsoid ellipsoid = EllipsoidOf({selector == 54 ? "54" : selector == 80 ? "80" : "2000"});
    answer["ellipsoidLength"] = GeodesicLength(degrees, ellipsoid);
    if (ring) {
        answer["ellipsoidArea"] = GeodesicArea(degrees, ellipsoid);
        degrees.push_back(degrees.front());
        answer["ellipsoidPerimeter"] = GeodesicLength(degrees, ellipsoid);
    }
    return answer;
}

Json Snap(OpenedMap& map, double x, double y, double reach) {
    double best = reach, bx = 0.0, by = 0.0;
    bool found = false;
    Feature feature;
    for (const std::uint32_t place : map.store.Within(Box{x, y, x, y}.Widened(reach))) {
        CheckStop();
        if (map.hidden[place]) continue;
        map.store.Read(place, feature);
        for (const Shape& shape : feature.shapes) {
            if (UsesOf(feature, shape.kind).empty()) continue;
            for (const Chain& chain : shape.chains)
                for (std::size_t i = 0; i < chain.size(); ++i) {
                    const double far = std::hypot(chain.x[i] - x, chain.y[i] - y);
                    if (far > best) continue;
                    best = far;
                    bx = chain.x[i];
                    by = chain.y[i];
                    found = true;
                }
        }
    }
    return found ? Json{{"x", bx}, {"y", by}} : Json::object();
}

}  // namespace zm::tool
