// Recorded pixels of drawing operations: the handle layer, the regions and the device adapters against another
// implementation.
#include "tests/vector_runner/registry.h"

#include <algorithm>
#include <cmath>
#include <cstdlib>
#include <map>
#include <memory>
#include <set>
#include <stdexcept>

#include "draw/device.h"
#include "tests/draw/gdi_surface.h"
#include "tests/draw/raster_device.h"

namespace {

using namespace zm::vectors;
using zm::test::GdiSurface;
using zm::test::GdiSurfaceKind;
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

struct Kind {
    std::string name;
    GdiSurfaceKind::Maker make;
};
std::vector<Kind>& Kinds() {
    static std::vector<Kind> kinds;
    return kinds;
}

// The plain pixel device of the tests.
class RasterSurface : public GdiSurface {
 public:
    RasterSurface(int width, int height) : m_device(width, height) {}
    HDC dc() override { return &m_device; }
    int width() const override { return m_device.width(); }
    int height() const override { return m_device.height(); }
    COLORREF At(int x, int y) override { return m_device.At(x, y); }
    bool KeepsColours() const override { return true; }

 private:
    RasterDevice m_device;
};

const GdiSurfaceKind kRaster("plain pixels", [](int width, int height, bool) {
    return std::make_unique<RasterSurface>(width, height);
});

class Player {
 public:
    explicit Player(GdiSurface& surface) : m_surface(surface), m_dc(surface.dc()) {}
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
            const int done = device::SelectObject(m_dc, pen) != nullptr ? 1 : 0;
            device::DeleteObject(pen);
            return done;
        }
        if (name == "brush") {
            const HBRUSH brush = Brush(op.at("brush"));
            const int done = device::SelectObject(m_dc, brush) != nullptr ? 1 : 0;
            device::DeleteObject(brush);
            return done;
        }
        if (name == "moveto") return device::MoveToEx(m_dc, Point(op.at("at")).x, Point(op.at("at")).y, nullptr);
        if (name == "lineto") return device::LineTo(m_dc, Point(op.at("at")).x, Point(op.at("at")).y);
        if (name == "arc") {
            const Json& b = op.at("box");
            const POINT s = Point(op.at("start"));
            const POINT e = Point(op.at("end"));
            return device::Arc(m_dc, b.at(0), b.at(1), b.at(2), b.at(3), s.x, s.y, e.x, e.y);
        }
        if (name == "rectangle") {
            const Json& b = op.at("box");
            return device::Rectangle(m_dc, b.at(0), b.at(1), b.at(2), b.at(3));
        }
        if (name == "setpixel") {
            const POINT p = Point(op.at("at"));
            return ColorText(device::SetPixel(m_dc, p.x, p.y, Color(op.at("colour"))));
        }
        if (name == "getpixel") {
            const POINT p = Point(op.at("at"));
            return ColorText(m_surface.At(p.x, p.y));
        }
        if (name == "textcolor") return ColorText(device::SetTextColor(m_dc, Color(op.at("colour"))));
        if (name == "bkcolor") return ColorText(device::SetBkColor(m_dc, Color(op.at("colour"))));
        if (name == "bkmode") return device::SetBkMode(m_dc, op.at("mode").get<int>());
        return PlayRegion(name, op);
    }

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
            return device::CombineRgn(Region(op.at("target")), Region(op.at("first")), Region(op.at("second")),
                                      op.at("mode"));
        }
        if (name == "rgnbox") {
            RECT box{};
            const int kind = device::GetRgnBox(Region(op.at("region")), &box);
            return {{"kind", kind}, {"box", {box.left, box.top, box.right, box.bottom}}};
        }
        if (name == "fillrgn") {
            const HBRUSH brush = Brush(op.at("brush"));
            const int done = device::FillRgn(m_dc, Region(op.at("region")), brush);
            device::DeleteObject(brush);
            return done;
        }
        throw std::runtime_error("unknown operation " + name);
    }

    // The region of that name; null is a null handle.
    HRGN Region(const Json& name) const { return name.is_null() ? nullptr : m_regions.at(name); }

    Json Keep(const Json& op, HRGN region) {
        auto& place = m_regions[op.at("region").get<std::string>()];
        device::DeleteObject(place);
        place = region;
        return region != nullptr ? 1 : 0;
    }

    static HBRUSH Brush(const Json& brush) {
        if (brush.is_null()) return nullptr;  // a null handle
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

    GdiSurface& m_surface;
    HDC m_dc;
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

std::map<COLORREF, Pixels> Drawn(GdiSurface& surface) {
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

struct End {
    double x, y;
};

// Where the rays of a record's arcs meet their ellipses.
std::vector<End> EndsOfArcs(const Json& record) {
    std::vector<End> ends;
    for (const Json& op : record.at("ops")) {
        if (op.at("op") != "arc") continue;
        const auto box = op.at("box").get<std::vector<double>>();
        const double x = (box.at(0) + box.at(2)) / 2.0, y = (box.at(1) + box.at(3)) / 2.0;
        const double a = std::abs(box.at(2) - box.at(0)) / 2.0, b = std::abs(box.at(3) - box.at(1)) / 2.0;
        for (const char* ray : {"start", "end"}) {
            const auto to = op.at(ray).get<std::vector<double>>();
            const double dx = to.at(0) - x, dy = to.at(1) - y, length = std::hypot(dx / a, dy / b);
            if (length > 0.0) ends.push_back({x + dx / length, y + dy / length});
        }
    }
    return ends;
}

// A pixel that has none of the other picture within reach; of an arc's picture, within two pixels at its ends, which
// the recording leaves out by up to a pixel.
std::string FarPixel(const Pixels& a, const Pixels& b, int reach, const std::vector<End>& ends) {
    constexpr int kAtEnds = 2;
    for (const Pixel& p : a) {
        if (HasNear(b, p, reach)) continue;
        const bool atEnd = std::any_of(ends.begin(), ends.end(), [&](const End& end) {
            return std::max(std::abs(end.x - p.x), std::abs(end.y - p.y)) <= kAtEnds;
        });
        if (!atEnd || !HasNear(b, p, kAtEnds)) return std::to_string(p.x) + "," + std::to_string(p.y);
    }
    return {};
}

bool HasReason(const Json& record, const char* reason) {
    const Json why = record.value("why", Json::array());
    return std::find(why.begin(), why.end(), reason) != why.end();
}

Outcome RunOn(GdiSurface& surface, const Json& record) {
    Player player(surface);
    const Json& ops = record.at("ops");
    for (std::size_t i = 0; i < ops.size(); ++i) {
        const Json result = player.Play(ops[i]);
        const bool outside = HasReason(record, "outside") && result == "invalid";
        if (!outside && result != record.at("results")[i])
            return {false, "operation " + std::to_string(i) + " " + ops[i].dump() + ": expected " +
                               record.at("results")[i].dump() + ", found " + result.dump()};
    }
    auto expected = Recorded(record.at("pixels"));
    auto found = Drawn(surface);
    if (HasReason(record, "mono-colour")) {
        if (!surface.KeepsColours()) return {};
        // How other colours are reduced to two is open; where something is drawn is not.
        Pixels all;
        for (const auto& [color, pixels] : found) all.insert(pixels.begin(), pixels.end());
        for (const Pixel& p : expected[0])
            if (all.count(p) == 0) return {false, "a black pixel is missing"};
        return {};
    }
    const bool loose = HasReason(record, "arc") || HasReason(record, "wide");
    const std::vector<End> ends = HasReason(record, "arc") ? EndsOfArcs(record) : std::vector<End>();
    for (const auto& [color, pixels] : expected) found[color];
    for (const auto& [color, pixels] : found) {
        const Pixels& wanted = expected[color];
        const int reach = loose ? 1 : 0;
        for (const std::string& apart : {FarPixel(pixels, wanted, reach, ends), FarPixel(wanted, pixels, reach, ends)})
            if (!apart.empty())
                return {false, "colour " + ColorText(color).dump() + ": the pictures differ at " + apart};
    }
    return {};
}

Outcome RunGdi(const Json& record) {
    for (const Kind& kind : Kinds()) {
        const auto surface =
            kind.make(record.at("width").get<int>(), record.at("height").get<int>(), record.at("surface") == "mono");
        Outcome outcome = RunOn(*surface, record);
        if (!outcome.passed) return {false, "on " + kind.name + ": " + outcome.message};
    }
    return {};
}

const Format kGdi(
    "gdi", [](const std::string&, const Json& record) { return record.contains("ops") && record.contains("pixels"); },
    [](const std::string&, const Json& record) { return RunGdi(record); });

}  // namespace

zm::test::GdiSurfaceKind::GdiSurfaceKind(const char* name, Maker make) {
    Kinds().push_back({name, std::move(make)});
}
