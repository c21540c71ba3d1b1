// Any polygon, segments, arcs and regions: nothing faults, and the index answers like the plain order of edges.
#include <cmath>
#include <cstdint>
#include <cstdlib>
#include <cstring>
#include <vector>

#include "zenromath/device.h"
#include "zenromath/draw.h"
#include "zenromath/geometry.h"

namespace {

class Reader {
 public:
    Reader(const std::uint8_t* data, std::size_t size) : m_data(data), m_left(size) {}
    bool empty() const { return m_left == 0; }
    unsigned Byte() {
        if (m_left == 0) return 0;
        --m_left;
        return *m_data++;
    }
    // Mostly small multiples of an eighth, so that things meet; sometimes any bits.
    double Real() {
        const unsigned kind = Byte();
        if (kind < 200) return (static_cast<int>(Byte()) - 128) / 8.0 + (kind % 4 == 0 ? 1e-7 * (kind % 13) : 0.0);
        if (kind < 240) return static_cast<int>(Byte() * 256 + Byte()) * 0.37 - 9000.0;
        double value = 0.0;
        std::uint8_t bytes[8];
        for (auto& b : bytes) b = static_cast<std::uint8_t>(Byte());
        std::memcpy(&value, bytes, sizeof value);
        return value;
    }

 private:
    const std::uint8_t* m_data;
    std::size_t m_left;
};

void Check(bool fine) {
    if (!fine) std::abort();
}

void ComparePoint(CCutArea& area, std::vector<double>& x, std::vector<double>& y, double px, double py) {
    double left = 0, top = 0, right = 0, bottom = 0;
    area.getcutarea(left, top, right, bottom);
    const bool inBox = px >= left && px <= right && py >= bottom && py <= top;
    const int plain = inBox ? PtInPolyEdge(static_cast<int>(x.size()), x.data(), y.data(), px, py) : 0;
    Check(area.cutpoint(px, py) == plain);
}

}  // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
    Reader in(data, size);
    std::vector<double> x;
    std::vector<double> y;
    const unsigned n = in.Byte() % 120;
    for (unsigned i = 0; i < n; ++i) {
        x.push_back(in.Real());
        y.push_back(in.Real());
    }
    CCutArea area(1);
    area.setcutarea(static_cast<int>(n), x.data(), y.data());
    while (!in.empty()) {
        double s[4] = {in.Real(), in.Real(), in.Real(), in.Real()};
        if (n >= 3) ComparePoint(area, x, y, s[0], s[1]);
        double angles[8] = {s[2], s[3]};
        Check(area.cutarc(s[0], s[1], in.Real(), angles) <= 8);
        area.cutline(s[0], s[1], s[2], s[3]);
        area.rgncutline(s[0], s[1], s[2], s[3], nullptr);
        std::vector<POINT> points;
        for (unsigned i = in.Byte() % 8; i > 0; --i)
            points.push_back({static_cast<int>(in.Byte()) - 128, static_cast<int>(in.Byte()) - 128});
        const zm::Region a = zm::Region::Polygon(points.data(), static_cast<int>(points.size()), ALTERNATE);
        const zm::Region b = zm::Region::Rectangle(-20, -30, static_cast<int>(in.Byte()), 40);
        const zm::Region both = zm::Region::Combined(a, b, RGN_AND);
        const int px = static_cast<int>(in.Byte()) - 128;
        const int py = static_cast<int>(in.Byte()) - 128;
        Check(both.Contains(px, py) == (a.Contains(px, py) && b.Contains(px, py)));
    }
    return 0;
}
