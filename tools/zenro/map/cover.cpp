#include "tools/zenro/map/cover.h"

#include <algorithm>
#include <cmath>

#include "tools/zenro/map/shapes.h"

namespace zm::tool {
namespace {

constexpr double kCell = 0.5;  // millimetres of paper
constexpr double kMostCells = 16.0e6;
constexpr double kTaken = 2.0;

}  // namespace

Cover::Cover(const Page& page) : m_sheet(page.sheet), m_cell(page.Ground(kCell)) {
    const double width = m_sheet.x2 - m_sheet.x1, height = m_sheet.y2 - m_sheet.y1;
    m_cell = std::max(m_cell, std::sqrt(width * height / kMostCells));
    m_columns = static_cast<int>(width / m_cell) + 1;
    m_rows = static_cast<int>(height / m_cell) + 1;
    m_cells.assign(static_cast<std::size_t>(m_columns) * static_cast<std::size_t>(m_rows), 0);
    if (!page.clip.empty()) CloseOutside(page.ClippedArea());
}

// Nothing finds room where the map is clipped away.
void Cover::CloseOutside(const Shape& map) {
    for (int row = 0; row < m_rows; ++row) {
        std::vector<double> xs = Crossings(map, m_sheet.y1 + (row + 0.5) * m_cell);
        xs.insert(xs.begin(), -1e300);
        xs.push_back(1e300);
        for (std::size_t i = 0; i + 1 < xs.size(); i += 2)
            for (int column = 0; column < m_columns; ++column) {
                const double x = m_sheet.x1 + (column + 0.5) * m_cell;
                if (x > xs[i] && x < xs[i + 1])
                    m_cells[static_cast<std::size_t>(row) * static_cast<std::size_t>(m_columns) +
                            static_cast<std::size_t>(column)] = label;
            }
    }
}

const std::uint8_t* Cover::At(double x, double y) const {
    if (!(x >= m_sheet.x1 && x <= m_sheet.x2 && y >= m_sheet.y1 && y <= m_sheet.y2)) return nullptr;
    const int column = static_cast<int>((x - m_sheet.x1) / m_cell), row = static_cast<int>((y - m_sheet.y1) / m_cell);
    return &m_cells[static_cast<std::size_t>(row) * static_cast<std::size_t>(m_columns) +
                    static_cast<std::size_t>(column)];
}

void Cover::MarkArea(const Shape& shape) {
    const Box box = BoxOf(shape.chains.front());
    const double low = std::max(box.y1, m_sheet.y1), high = std::min(box.y2, m_sheet.y2);
    for (double y = low + m_cell / 2; y < high; y += m_cell) {
        const std::vector<double> xs = Crossings(shape, y);
        for (std::size_t i = 0; i + 1 < xs.size(); i += 2)
            for (double x = std::max(xs[i], m_sheet.x1); x < std::min(xs[i + 1], m_sheet.x2); x += m_cell) {
                std::uint8_t* cell = At(x, y);
                if (cell != nullptr) *cell = std::max<std::uint8_t>(*cell, stroke);
            }
    }
}

std::uint8_t* Cover::At(double x, double y) {
    return const_cast<std::uint8_t*>(static_cast<const Cover&>(*this).At(x, y));
}

void Cover::MarkLine(const Chain& chain) {
    const double reach = (m_sheet.x2 - m_sheet.x1) + (m_sheet.y2 - m_sheet.y1);
    for (std::size_t i = 0; i + 1 < chain.size(); ++i) {
        Box segment;
        segment.Add(chain.x[i], chain.y[i]);
        segment.Add(chain.x[i + 1], chain.y[i + 1]);
        if (!segment.Meets(m_sheet)) continue;
        const double dx = chain.x[i + 1] - chain.x[i], dy = chain.y[i + 1] - chain.y[i];
        const double length = std::hypot(dx, dy);
        if (length > 50.0 * reach) continue;
        const int steps = static_cast<int>(length / m_cell) + 1;
        for (int k = 0; k <= steps; ++k) {
            std::uint8_t* cell = At(chain.x[i] + dx * k / steps, chain.y[i] + dy * k / steps);
            if (cell != nullptr) *cell = std::max<std::uint8_t>(*cell, stroke);
        }
    }
}

void Cover::MarkBox(double x, double y, double length, double height, double radians, Weight weight) {
    const double c = std::cos(radians), s = std::sin(radians), step = m_cell * 0.7;
    for (double u = 0.0; u <= length + step / 2; u += step)
        for (double v = 0.0; v <= height + step / 2; v += step) {
            std::uint8_t* cell = At(x + u * c - v * s, y + u * s + v * c);
            if (cell != nullptr) *cell = std::max<std::uint8_t>(*cell, weight);
        }
}

double Cover::Covered(double x, double y, double length, double height, double radians) const {
    const double c = std::cos(radians), s = std::sin(radians), step = m_cell * 0.9;
    long all = 0, covered = 0;
    for (double u = 0.0; u <= length + step / 2; u += step)
        for (double v = 0.0; v <= height + step / 2; v += step) {
            const double uu = std::min(u, length), vv = std::min(v, height);
            const std::uint8_t* cell = At(x + uu * c - vv * s, y + uu * s + vv * c);
            if (cell == nullptr || *cell == label) return kTaken;
            ++all;
            covered += *cell;
        }
    return all > 0 ? static_cast<double>(covered) / static_cast<double>(all) : 0.0;
}

}  // namespace zm::tool
