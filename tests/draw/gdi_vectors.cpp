// Recorded pixels of drawing operations: the handle layer and the regions against another implementation.
#include "tests/vector_runner/registry.h"

#include <algorithm>
#include <cmath>
#include <cstdlib>
#include <map>
#include <set>
#include <stdexcept>

#include "draw/device.h"
#include "tests/draw/raster_device.h"

namespace {

using namespace zm::vectors;
using zm::test::RasterDevice;
namespace device = zm::device;

struct Pixel {
    int x, y;
    bool operator<(const Pixel& o) const { return y != o.y ? y < o.y : x < o.x; }
};
using Pixels = std::set<Pixel>;

// rrggbb, as the records have it.
COLORREF Color(const Json& text) {
    const auto value = static_cast<COLORREF>(std::strtoul(text.get<std::string>().c_str(), nullptr, 16));
    return (value >> 16) | (value & 0xFF00) | ((value & 0xFF) << 16);
}

Json ColorText(COLORREF color) {
    if (color == CLR_INVALID) return "invalid";
    char text[8];
    std::snprintf(text, sizeof text, "%02x%02x%02x", color & 0xFFU, (color >> 8) & 0xFFU, (color >> 16) & 0xFFU);
    return text;
}

POINT Point(const Json& at) {
    return {at.at(0).get<int>(), at.at(1).get<int>()};
}

class Player {
 public:
    explicit Player(const Json& record) : m_surface(record.at("width").get<int>(), record.at("height").get<int>()) {}
    ~Player() {
        for (const auto& [name, region] : m_regions) device::DeleteObject(region);
    }
    Player(const Player&) = delete;
    Player& operator=(const Player&) = delete;

    Json Play(const Json& op) {
        const auto name = op.at("op").get<std::string>();
        if (name == "pen") {
            const HPEN pen =
                device::CreatePen(op.at("style").get<int>(), op.at("width").get<int>(), Color(op.at("colour")));
            const int done = device::SelectObject(&m_surface, pen) != nullptr ? 1 : 0;
            device::DeleteObject(pen);
            return done;
        }
        if (name == "brush") {
            const HBRUSH brush = Brush(op.at("brush"));
            const int done = device::SelectObject(&m_surface, brush) != nullptr ? 1 : 0;
            device::DeleteObject(brush);
            return done;
        }
        if (name == "moveto") return device::MoveToEx(&m_surface, Point(op.at("at")).x, Point(op.at("at")).y, nullptr);
        if (name == "lineto") return device::LineTo(&m_surface, Point(op.at("at")).x, Point(op.at("at")).y);
        if (name == "arc") {
            const Json& b = op.at("box");
            const POINT s = Point(op.at("start"));
            const POINT e = Point(op.at("end"));
            return device::Arc(&m_surface, b.at(0), b.at(1), b.at(2), b.at(3), s.x, s.y, e.x, e.y);
        }
        if (name == "rectangle") {
            const Json& b = op.at("box");
            return device::Rectangle(&m_surface, b.at(0), b.at(1), b.at(2), b.at(3));
        }
        if (name == "setpixel") {
            const POINT p = Point(op.at("at"));
            return ColorText(device::SetPixel(&m_surface, p.x, p.y, Color(op.at("colour"))));
        }
        if (name == "getpixel") {
            const POINT p = Point(op.at("at"));
            return ColorText(m_surface.At(p.x, p.y));
        }
        if (name == "textcolor") return ColorText(device::SetTextColor(&m_surface, Color(op.at("colour"))));
        if (name == "bkcolor") return ColorText(device::SetBkColor(&m_surface, Color(op.at("colour"))));
        if (name == "bkmode") return device::SetBkMode(&m_surface, op.at("mode").get<int>());
        return PlayRegion(name, op);
    }

    const RasterDevice& surface() const { return m_surface; }

 private:
    Json PlayRegion(const std::string& name, const Json& op) {
        if (name == "polyrgn") {
            std::vector<POINT> points;
            for (const Json& p : op.at("points")) points.push_back(Point(p));
            return Keep(op, device::CreatePolygonRgn(points.data(), static_cast<int>(points.size()), ALTERNATE));
        }
        if (name == "rectrgn") {
            const Json& b = op.at("box");
            return Keep(op, device::CreateRectRgn(b.at(0), b.at(1), b.at(2), b.at(3)));
        }
        if (name == "combine") {
            const HRGN second = op.at("second").is_null() ? nullptr : m_regions.at(op.at("second"));
            return device::CombineRgn(m_regions.at(op.at("target")), m_regions.at(op.at("first")), second,
                                      op.at("mode"));
        }
        if (name == "rgnbox") {
            RECT box{};
            const int kind = device::GetRgnBox(m_regions.at(op.at("region")), &box);
            return {{"kind", kind}, {"box", {box.left, box.top, box.right, box.bottom}}};
        }
        if (name == "fillrgn") {
            const HBRUSH brush = Brush(op.at("brush"));
            const int done = device::FillRgn(&m_surface, m_regions.at(op.at("region")), brush);
            device::DeleteObject(brush);
            return done;
        }
        throw std::runtime_error("unknown operation " + name);
    }

    Json Keep(const Json& op, HRGN region) {
        auto& place = m_regions[op.at("region").get<std::string>()];
        device::DeleteObject(place);
        place = region;
        return region != nullptr ? 1 : 0;
    }

    static HBRUSH Brush(const Json& brush) {
        const auto kind = brush.at("kind").get<std::string>();
        if (kind == "null") return device::NullBrush();
        if (kind == "white") return device::WhiteBrush();
        if (kind == "solid") return device::CreateSolidBrush(Color(brush.at("colour")));
        if (kind == "hatch") return device::CreateHatchBrush(brush.at("style"), Color(brush.at("colour")));
        std::vector<std::uint8_t> bytes;
        for (const Json& word : brush.at("words"))
            for (int bit = 0; bit < brush.at("word_bits").get<int>(); bit += 8)
                bytes.push_back(static_cast<std::uint8_t>(word.get<std::uint32_t>() >> bit));
        const HBITMAP bitmap = device::CreateBitmap(8, 8, 1, 1, bytes.data());
        const HBRUSH made = device::CreatePatternBrush(bitmap);
        device::DeleteObject(bitmap);
        return made;
    }

    RasterDevice m_surface;
    std::map<std::string, HRGN> m_regions;
};

std::map<COLORREF, Pixels> Recorded(const Json& pixels) {
    std::map<COLORREF, Pixels> colors;
    for (const auto& [color, rows] : pixels.items())
        for (int y = 0; y < static_cast<int>(rows.size()); ++y) {
            const auto bits =
                std::strtoull(rows.at(static_cast<std::size_t>(y)).get<std::string>().c_str(), nullptr, 16);
            for (int x = 0; x < 64; ++x)
                if (((bits >> (63 - x)) & 1U) != 0) colors[Color(color)].insert({x, y});
        }
    return colors;
}

std::map<COLORREF, Pixels> Drawn(const RasterDevice& surface) {
    std::map<COLORREF, Pixels> colors;
    for (int y = 0; y < surface.height(); ++y)
        for (int x = 0; x < surface.width(); ++x)
            if (surface.At(x, y) != RasterDevice::kWhite) colors[surface.At(x, y)].insert({x, y});
    return colors;
}

bool HasNear(const Pixels& pixels, const Pixel& at, int reach) {
    for (int y = -reach; y <= reach; ++y)
        for (int x = -reach; x <= reach; ++x)
            if (pixels.count({at.x + x, at.y + y}) != 0) return true;
    return false;
}

// Ends of arcs may lie two pixels apart, all else one.
std::string FarPixel(const Pixels& a, const Pixels& b, int reach) {
    for (const Pixel& p : a)
        if (!HasNear(b, p, reach)) return std::to_string(p.x) + "," + std::to_string(p.y);
    return {};
}

bool HasReason(const Json& record, const char* reason) {
    const Json why = record.value("why", Json::array());
    return std::find(why.begin(), why.end(), reason) != why.end();
}

Outcome RunGdi(const Json& record) {
    Player player(record);
    const Json& ops = record.at("ops");
    for (std::size_t i = 0; i < ops.size(); ++i) {
        const Json result = player.Play(ops[i]);
        const bool outside = HasReason(record, "outside") && result == "invalid";
        if (!outside && result != record.at("results")[i])
            return {false, "operation " + std::to_string(i) + " " + ops[i].dump() + ": expected " +
                               record.at("results")[i].dump() + ", found " + result.dump()};
    }
    auto expected = Recorded(record.at("pixels"));
    auto found = Drawn(player.surface());
    if (HasReason(record, "mono-colour")) {
        // How other colours are reduced to two is open; where something is drawn is not.
        Pixels all;
        for (const auto& [color, pixels] : found) all.insert(pixels.begin(), pixels.end());
        for (const Pixel& p : expected[0])
            if (all.count(p) == 0) return {false, "a black pixel is missing"};
        return {};
    }
    const bool loose = HasReason(record, "arc") || HasReason(record, "wide");
    for (const auto& [color, pixels] : expected) found[color];
    for (const auto& [color, pixels] : found) {
        const Pixels& wanted = expected[color];
        const int reach = !loose ? 0 : HasReason(record, "arc") ? 2 : 1;
        for (const std::string& far : {FarPixel(pixels, wanted, reach), FarPixel(wanted, pixels, reach)})
            if (!far.empty()) return {false, "colour " + ColorText(color).dump() + ": the pictures differ at " + far};
    }
    return {};
}

const Format kGdi(
    "gdi", [](const std::string&, const Json& record) { return record.contains("ops") && record.contains("pixels"); },
    [](const std::string&, const Json& record) { return RunGdi(record); });

}  // namespace
