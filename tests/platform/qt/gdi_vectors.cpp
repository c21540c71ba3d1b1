// Recorded drawing operations on a small surface, pixel for pixel, on the Qt device.
#include <QImage>
#include <algorithm>
#include <cstdlib>
#include <map>
#include <stdexcept>
#include <vector>

#include "draw/device.h"
#include "platform/qt/application.h"
#include "platform/qt/qt_device.h"
#include "tests/vector_runner/registry.h"

namespace {

using zm::vectors::Json;
using zm::vectors::Outcome;
namespace device = zm::device;

// Red, green, blue in hex; a COLORREF has red lowest.
COLORREF ColorOf(const Json& hex) {
    const auto rgb = static_cast<COLORREF>(std::stoul(hex.get<std::string>(), nullptr, 16));
    return (rgb & 0xFF) << 16 | (rgb & 0xFF00) | rgb >> 16;
}

Json HexOf(COLORREF color) {
    if (color == CLR_INVALID) return "invalid";
    char text[8];
    std::snprintf(text, sizeof text, "%02x%02x%02x", color & 0xFF, color >> 8 & 0xFF, color >> 16 & 0xFF);
    return text;
}

HBRUSH MakeBrush(const Json& brush) {
    const auto kind = brush.at("kind").get<std::string>();
    if (kind == "solid") return device::CreateSolidBrush(ColorOf(brush.at("colour")));
    if (kind == "hatch") return device::CreateHatchBrush(brush.at("style").get<int>(), ColorOf(brush.at("colour")));
    if (kind == "null") return device::NullBrush();
    if (kind == "white") return device::WhiteBrush();
    const auto words = brush.at("words").get<std::vector<std::uint32_t>>();
    HBITMAP bitmap = nullptr;
    if (brush.at("word_bits").get<int>() == 16) {
        const std::vector<std::uint16_t> narrow(words.begin(), words.end());
        bitmap = device::CreateBitmap(8, 8, 1, 1, narrow.data());
    } else {
        bitmap = device::CreateBitmap(8, 8, 1, 1, words.data());
    }
    HBRUSH made = device::CreatePatternBrush(bitmap);
    device::DeleteObject(bitmap);
    return made;
}

POINT PointOf(const Json& at) {
    return {at.at(0).get<int>(), at.at(1).get<int>()};
}
RECT BoxOf(const Json& b) {
    return {b.at(0).get<int>(), b.at(1).get<int>(), b.at(2).get<int>(), b.at(3).get<int>()};
}

class Replay {
 public:
    Replay(QImage& image, const Json& record)
        : m_image(image), m_record(record), m_device(&image, zm::qt::Rendering::pixels) {}

    Json Run() {
        Json results = Json::array();
        for (const Json& op : m_record.at("ops")) results.push_back(One(op));
        m_device.Finish();
        return results;
    }

 private:
    Json One(const Json& op) {
        const auto name = op.at("op").get<std::string>();
        HDC dc = &m_device;
        if (name == "pen")
            return device::SelectObject(dc, device::CreatePen(op.at("style").get<int>(), op.at("width").get<int>(),
                                                              ColorOf(op.at("colour")))) != nullptr
                       ? 1
                       : 0;
        if (name == "brush") return device::SelectObject(dc, MakeBrush(op.at("brush"))) != nullptr ? 1 : 0;
        if (name == "moveto") return device::MoveToEx(dc, PointOf(op.at("at")).x, PointOf(op.at("at")).y, nullptr);
        if (name == "lineto") return device::LineTo(dc, PointOf(op.at("at")).x, PointOf(op.at("at")).y);
        if (name == "arc") {
            const RECT b = BoxOf(op.at("box"));
            const POINT s = PointOf(op.at("start"));
            const POINT e = PointOf(op.at("end"));
            return device::Arc(dc, b.left, b.top, b.right, b.bottom, s.x, s.y, e.x, e.y);
        }
        if (name == "rectangle") {
            const RECT b = BoxOf(op.at("box"));
            return device::Rectangle(dc, b.left, b.top, b.right, b.bottom);
        }
        if (name == "setpixel")
            return HexOf(
                device::SetPixel(dc, PointOf(op.at("at")).x, PointOf(op.at("at")).y, ColorOf(op.at("colour"))));
        if (name == "getpixel") {
            m_device.Flush();
            const POINT at = PointOf(op.at("at"));
            if (!m_image.valid(at.x, at.y)) return "invalid";
            const QRgb rgb = m_image.pixel(at.x, at.y);
            return HexOf(static_cast<COLORREF>(qRed(rgb) | qGreen(rgb) << 8 | qBlue(rgb) << 16));
        }
        if (name == "textcolor") return HexOf(device::SetTextColor(dc, ColorOf(op.at("colour"))));
        if (name == "bkcolor") return HexOf(device::SetBkColor(dc, ColorOf(op.at("colour"))));
        if (name == "bkmode") return device::SetBkMode(dc, op.at("mode").get<int>());
        return RegionOp(name, op);
    }

    Json RegionOp(const std::string& name, const Json& op) {
        if (name == "polyrgn") {
            std::vector<POINT> points;
            for (const Json& p : op.at("points")) points.push_back(PointOf(p));
            return Made(op, device::CreatePolygonRgn(points.data(), static_cast<int>(points.size()), ALTERNATE));
        }
        if (name == "rectrgn") {
            const RECT b = BoxOf(op.at("box"));
            return Made(op, device::CreateRectRgn(b.left, b.top, b.right, b.bottom));
        }
        if (name == "combine")
            return device::CombineRgn(Named(op.at("target")), Named(op.at("first")), Named(op.at("second")),
                                      op.at("mode").get<int>());
        if (name == "rgnbox") {
            RECT box{};
            const int kind = device::GetRgnBox(Named(op.at("region")), &box);
            return {{"kind", kind}, {"box", {box.left, box.top, box.right, box.bottom}}};
        }
        if (name == "fillrgn") {
            HBRUSH brush = MakeBrush(op.at("brush"));
            const int done = device::FillRgn(&m_device, Named(op.at("region")), brush);
            device::DeleteObject(brush);
            return done;
        }
        throw std::runtime_error("unknown operation " + name);
    }

    Json Made(const Json& op, HRGN region) {
        m_regions[op.at("region").get<std::string>()] = region;
        return region != nullptr ? 1 : 0;
    }
    HRGN Named(const Json& name) { return name.is_null() ? nullptr : m_regions[name.get<std::string>()]; }

    QImage& m_image;
    const Json& m_record;
    zm::qt::QtDevice m_device;
    std::map<std::string, HRGN> m_regions;
};

using Bits = std::vector<std::vector<bool>>;  // [row][column]

Bits BitsOf(const Json& rows, int width, int height) {
    Bits bits(static_cast<std::size_t>(height), std::vector<bool>(static_cast<std::size_t>(width)));
    for (int y = 0; y < height; ++y) {
        const std::uint64_t row = std::stoull(rows.at(static_cast<std::size_t>(y)).get<std::string>(), nullptr, 16);
        for (int x = 0; x < width; ++x)
            bits[static_cast<std::size_t>(y)][static_cast<std::size_t>(x)] = (row >> (63 - x) & 1) != 0;
    }
    return bits;
}

// The first pixel of a that has none of b within the distance; negative if there is none.
int FirstAlone(const Bits& a, const Bits& b, int distance) {
    const int height = static_cast<int>(a.size());
    const int width = static_cast<int>(a.front().size());
    for (int y = 0; y < height; ++y)
        for (int x = 0; x < width; ++x) {
            if (!a[static_cast<std::size_t>(y)][static_cast<std::size_t>(x)]) continue;
            bool near = false;
            for (int v = std::max(0, y - distance); v <= std::min(height - 1, y + distance); ++v)
                for (int u = std::max(0, x - distance); u <= std::min(width - 1, x + distance); ++u)
                    near = near || b[static_cast<std::size_t>(v)][static_cast<std::size_t>(u)];
            if (!near) return y * width + x;
        }
    return -1;
}

bool Why(const Json& record, const char* reason) {
    if (!record.contains("why")) return false;
    for (const Json& why : record.at("why"))
        if (why == reason) return true;
    return false;
}

bool HasColouredPen(const Json& record) {
    for (const Json& op : record.at("ops"))
        if (op.at("op") == "pen" && op.at("colour") != "000000" && op.at("colour") != "ffffff") return true;
    return false;
}

Outcome ComparePixels(const Json& record, const QImage& image) {
    const int width = image.width();
    const int height = image.height();
    // Ends of arcs may be 2 pixels off, all else of doubtful figures 1.
    const int distance = Why(record, "arc") ? 2 : Why(record, "wide") ? 1 : 0;
    std::map<std::string, Bits> found;
    for (int y = 0; y < height; ++y)
        for (int x = 0; x < width; ++x) {
            const QRgb rgb = image.pixel(x, y) & 0xFFFFFF;
            if (rgb == 0xFFFFFF) continue;
            char name[8];
            std::snprintf(name, sizeof name, "%06x", rgb);
            Bits& bits = found[name];
            if (bits.empty())
                bits.assign(static_cast<std::size_t>(height), std::vector<bool>(static_cast<std::size_t>(width)));
            bits[static_cast<std::size_t>(y)][static_cast<std::size_t>(x)] = true;
        }
    const Bits none(static_cast<std::size_t>(height), std::vector<bool>(static_cast<std::size_t>(width)));
    for (const auto& [color, rows] : record.at("pixels").items()) {
        const Bits expected = BitsOf(rows, width, height);
        const Bits& got = found.count(color) ? found[color] : none;
        const int missing = FirstAlone(expected, got, distance);
        const int extra = FirstAlone(got, expected, distance);
        if (missing >= 0)
            return {false, "pixel " + std::to_string(missing % width) + ", " + std::to_string(missing / width) +
                               " is not " + color};
        if (extra >= 0)
            return {false, "pixel " + std::to_string(extra % width) + ", " + std::to_string(extra / width) + " is " +
                               color + " and should not be"};
        found.erase(color);
    }
    if (!found.empty()) return {false, "the colour " + found.begin()->first + " should not be there"};
    return {};
}

Outcome Run(const std::string&, const Json& record) {
    zm::qt::EnsureApplication();
    const bool mono = record.at("surface") == "mono";
    QImage image(record.at("width").get<int>(), record.at("height").get<int>(),
                 mono ? QImage::Format_Mono : QImage::Format_RGB32);
    if (mono) image.setColorTable({qRgb(0, 0, 0), qRgb(255, 255, 255)});
    mono ? image.fill(1) : image.fill(Qt::white);
    const Json results = Replay(image, record).Run();
    for (std::size_t i = 0; i < results.size(); ++i) {
        const Json& expected = record.at("results").at(i);
        if (Why(record, "outside") && results[i] == "invalid") continue;
        if (results[i] != expected)
            return {false, "operation " + std::to_string(i) + " " + record.at("ops")[i].dump() + ": expected " +
                               expected.dump() + ", found " + results[i].dump()};
    }
    // How a colour other than black and white is reduced to two is open; what such a pen drew is not compared.
    return Why(record, "mono-colour") && HasColouredPen(record) ? Outcome{} : ComparePixels(record, image);
}

const zm::vectors::Format kGdi(
    "gdi", [](const std::string&, const Json& record) { return record.contains("surface") && record.contains("ops"); },
    Run);

}  // namespace
