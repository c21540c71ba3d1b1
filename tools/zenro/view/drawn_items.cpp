#include "tools/zenro/view/drawn_items.h"

#include <algorithm>
#include <cmath>
#include <filesystem>

#include "tools/kit/text.h"
#include "tools/kit/translation.h"
#include "tools/zenro/view/positions.h"

namespace fs = std::filesystem;

namespace zm::tool {
namespace {

constexpr std::size_t kMostIdentified = 30, kMostFound = 200;

Json BoxOf(const Box& b) {
    return {b.x1, b.y1, b.x2, b.y2};
}

double AreaOf(const Chain& ring) {
    return std::fabs(TurnOf(ring)) / 2.0;
}

// The distance of a point from a chain.
double DistanceFrom(const Chain& chain, double x, double y) {
    double best = chain.size() == 1 ? std::hypot(chain.x[0] - x, chain.y[0] - y) : HUGE_VAL;
    for (std::size_t i = 1; i < chain.size(); ++i) {
        const double dx = chain.x[i] - chain.x[i - 1], dy = chain.y[i] - chain.y[i - 1];
        const double square = dx * dx + dy * dy;
        const double along =
            square > 0.0 ? std::clamp(((x - chain.x[i - 1]) * dx + (y - chain.y[i - 1]) * dy) / square, 0.0, 1.0) : 0.0;
        best = std::min(best, std::hypot(chain.x[i - 1] + along * dx - x, chain.y[i - 1] + along * dy - y));
    }
    return best;
}

bool IsFill(const DrawnItem& item) {
    return std::string_view(item.kind) == "fill";
}

std::string Small(std::string text) {
    for (char& c : text) c = c >= 'A' && c <= 'Z' ? static_cast<char>(c + 'a' - 'A') : c;
    return text;
}

}  // namespace

std::size_t DrawnItems::Add(DrawnItem item) {
    Box box;
    for (std::size_t i = 0; i < item.points.size(); ++i)
        if (std::isfinite(item.points.x[i]) && std::isfinite(item.points.y[i]))
            box.Add(item.points.x[i], item.points.y[i]);
    ++layers[item.layer].count;
    if (!box.empty()) {
        m_whole.Add(box.x1, box.y1);
        m_whole.Add(box.x2, box.y2);
    }
    m_items.push_back(std::move(item));
    m_boxes.push_back(box);
    m_leftOut.push_back(false);
    return m_items.size() - 1;
}

std::vector<std::uint32_t> DrawnItems::Within(const Box& window) const {
    std::vector<std::uint32_t> places = m_tree.Within(window);
    places.erase(std::remove_if(places.begin(), places.end(), [this](std::uint32_t i) { return !Shown(i); }),
                 places.end());
    return places;
}

Json DrawnItems::Layers() const {
    Json list = Json::array();
    for (std::size_t i = 0; i < layers.size(); ++i)
        if (layers[i].count > 0)
            list.push_back(
                {{"index", i},
                 {"name", layers[i].name},
                 {"count", layers[i].count},
                 {"rules", Json::array()},
                 {"colour", {layers[i].colour & 0xFF, layers[i].colour >> 8 & 0xFF, layers[i].colour >> 16 & 0xFF}},
                 {"width", layers[i].width}});
    return {{"layers", list}};
}

std::string DrawnItems::NameOf(std::size_t i) const {
    const DrawnItem& item = m_items[i];
    const std::string what = item.text.empty() ? std::string(item.kind) : "\"" + item.text + "\"";
    return layers[item.layer].name + ": " + what;
}

Json DrawnItems::Identify(double x, double y, double reach) const {
    std::vector<std::pair<double, std::size_t>> hits;  // fills last, the larger the later
    const Box around = Box{x, y, x, y}.Widened(reach);
    for (const std::uint32_t i : Within(around)) {
        const double away = DistanceFrom(m_items[i].points, x, y);
        if (IsFill(m_items[i]) && Inside(m_items[i].points, x, y))
            hits.emplace_back(reach + AreaOf(m_items[i].points), i);
        else if (away <= reach)
            hits.emplace_back(away, i);
    }
    std::stable_sort(hits.begin(), hits.end(), [](const auto& a, const auto& b) { return a.first < b.first; });
    Json answer = {{"count", hits.size()}, {"hits", Json::array()}};
    for (std::size_t k = 0; k < std::min(hits.size(), kMostIdentified); ++k) {
        const std::size_t i = hits[k].second;
        const DrawnItem& item = m_items[i];
        Json outline = Json::array(), fields = Json::array();
        for (std::size_t j = 0; j < item.points.size(); ++j) outline.push_back({item.points.x[j], item.points.y[j]});
        if (IsFill(item) && !outline.empty()) outline.push_back(outline.front());
        for (const auto& [name, value] : item.looks) fields.push_back({name, value});
        Json hit = {{"where", NameOf(i)},
                    {"layer", layers[item.layer].name},
                    {"kind", item.kind},
                    {"box", BoxOf(m_boxes[i])},
                    {"rules", Json::array()},
                    {"fields", fields},
                    {"outline", Json::array({outline})}};
        if (IsFill(item))
            hit["area"] = AreaOf(item.points);
        else if (item.points.size() > 1)
            hit["length"] = LengthOf(item.points);
        answer["hits"].push_back(std::move(hit));
    }
    return answer;
}

Json DrawnItems::Snap(double x, double y, double reach) const {
    double best = reach;
    Json found = Json::object();
    const Box around = Box{x, y, x, y}.Widened(reach);
    for (const std::uint32_t i : Within(around)) {
        const Chain& points = m_items[i].points;
        for (std::size_t j = 0; j < points.size(); ++j) {
            const double away = std::hypot(points.x[j] - x, points.y[j] - y);
            if (!(away <= best)) continue;
            best = away;
            found = {{"x", points.x[j]}, {"y", points.y[j]}};
        }
    }
    return found;
}

Json DrawnItems::Find(const std::string& text) const {
    Json found = Json::array();
    const std::string wanted = Small(Trim(text));
    if (wanted.empty()) return {{"found", found}};
    found = FindPositions(Trim(text), TargetPlane(), whole());
    for (std::size_t i = 0; i < m_items.size() && found.size() < kMostFound; ++i)
        if (Shown(i) && !m_boxes[i].empty() && Small(m_items[i].text).find(wanted) != std::string::npos)
            found.push_back({{"kind", "name"}, {"title", NameOf(i)}, {"box", BoxOf(m_boxes[i])}});
    return {{"found", found}, {"more", found.size() >= kMostFound}};
}

void DrawnItems::Hide(const std::vector<std::size_t>& hidden) {
    for (Layer& layer : layers) layer.hidden = false;
    for (const std::size_t layer : hidden)
        if (layer < layers.size()) layers[layer].hidden = true;
}

std::string DrawnItems::LeaveOut(std::uint64_t place) {
    if (place >= m_items.size()) return {};
    m_leftOut[place] = true;
    return NameOf(place);
}

Json AboutDrawn(const DrawnItems& items, double scale, const std::string& file, const Box& start) {
    std::error_code error;
    const std::string path = fs::absolute(PathOf(file), error).string();
    return {{"is", "ready"},
            {"features", items.size()},
            {"scale", scale},
            {"start", BoxOf(start)},
            {"data", BoxOf(items.whole())},
            {"rotation", 0.0},
            {"plane", Phrase("the plane of the file")},
            {"planeChinese", Phrase("the plane of the file")},
            {"geodetic", false},
            {"drawn", true},
            {"rules", ""},
            {"files", {path}}};
}

Json MeasureInPlane(const std::vector<double>& xy) {
    Chain chain;
    for (std::size_t i = 0; i + 1 < xy.size(); i += 2) {
        chain.x.push_back(xy[i]);
        chain.y.push_back(xy[i + 1]);
    }
    Json answer = {{"points", chain.size()}, {"length", LengthOf(chain)}};
    if (chain.size() < 3) return answer;
    answer["area"] = AreaOf(chain);
    answer["perimeter"] =
        LengthOf(chain) + std::hypot(chain.x.back() - chain.x.front(), chain.y.back() - chain.y.front());
    return answer;
}

}  // namespace zm::tool
