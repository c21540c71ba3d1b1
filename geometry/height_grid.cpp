#include "geometry/height_grid.h"

#include <algorithm>
#include <cmath>

namespace zm::geometry {
namespace {

constexpr std::size_t kCrowded = 32;  // points; a fuller cell has a grid of its own
constexpr double kLeastCell = kNear;  // metres
constexpr double kFarOut = 1e150;     // metres
// A near point has its coordinates within this of the position's, as computed in doubles: the differences are rounded,
// by less than the last digit here.
constexpr double kReach = 0.1000001;

}  // namespace

// Rounding is monotonic, so no point inside the box can be nearer than this sum, computed in the same way.
bool HeightGrid::Cells::OutOfReach(double x, double y) const {
    const double dx = std::max({xmin - x, x - xmax, 0.0});
    const double dy = std::max({ymin - y, y - ymax, 0.0});
    return dy + dx >= kNear;
}

HeightGrid::HeightGrid(const double* x, const double* y, const double* h, int n) {
    m_entries.reserve(static_cast<std::size_t>(n));
    for (int i = 0; i < n; ++i) {
        if (!std::isfinite(x[i]) || !std::isfinite(y[i])) continue;  // near nothing
        const bool farOut = std::fabs(x[i]) > kFarOut || std::fabs(y[i]) > kFarOut;
        (farOut ? m_far : m_entries).push_back({x[i], y[i], h[i], i});
    }
    m_starts.reserve(2 * m_entries.size() + 16);
    m_sorted.resize(m_entries.size());
    if (!m_entries.empty()) Build(0, m_entries.size());
    m_sorted = {};
}

// Makes the grid of the entries begin to end and sorts them into its cells; the number of the grid.
std::size_t HeightGrid::Build(std::size_t begin, std::size_t end) {
    const std::size_t number = m_grids.size();
    const Entry& first = m_entries[begin];
    Cells cells = {first.x, first.y, first.x, first.y, 0.0, 1, 1, m_starts.size(), {}};
    for (std::size_t i = begin; i < end; ++i) {
        cells.xmin = std::min(cells.xmin, m_entries[i].x);
        cells.ymin = std::min(cells.ymin, m_entries[i].y);
        cells.xmax = std::max(cells.xmax, m_entries[i].x);
        cells.ymax = std::max(cells.ymax, m_entries[i].y);
    }
    const double width = cells.xmax - cells.xmin;
    const double height = cells.ymax - cells.ymin;
    const auto count = static_cast<double>(end - begin);
    const double side = std::max({std::sqrt(width * height / count), std::max(width, height) / count, kLeastCell});
    cells.inverse = 1.0 / side;
    cells.columns = static_cast<int>(width * cells.inverse) + 1;
    cells.rows = static_cast<int>(height * cells.inverse) + 1;
    const std::size_t cellCount = static_cast<std::size_t>(cells.columns) * static_cast<std::size_t>(cells.rows);
    SortIntoCells(cells, begin, end);
    const std::size_t firstStart = cells.firstStart;
    m_grids.push_back(std::move(cells));

    // Outer points of a grid of more than one cell lie in different cells, so every grid has fewer points than its own.
    for (std::size_t c = 0; cellCount > 1 && c < cellCount; ++c) {
        const auto from = static_cast<std::size_t>(m_starts[firstStart + c]);
        const auto to = static_cast<std::size_t>(m_starts[firstStart + c + 1]);
        if (to - from <= kCrowded) continue;
        const std::size_t own = Build(from, to);
        m_grids[number].crowded.emplace_back(c, own);
    }
    return number;
}

// A counting sort, which keeps the order within a cell.
void HeightGrid::SortIntoCells(const Cells& cells, std::size_t begin, std::size_t end) {
    const auto columns = static_cast<std::size_t>(cells.columns);
    const std::size_t cellCount = columns * static_cast<std::size_t>(cells.rows);
    const auto cellOf = [&](const Entry& e) { return cells.Row(e.y) * columns + cells.Column(e.x); };
    m_starts.resize(cells.firstStart + cellCount + 1, 0);
    int* starts = m_starts.data() + cells.firstStart;
    for (std::size_t i = begin; i < end; ++i) ++starts[cellOf(m_entries[i])];
    int place = static_cast<int>(begin);
    for (std::size_t c = 0; c < cellCount; ++c) place += std::exchange(starts[c], place);
    for (std::size_t i = begin; i < end; ++i) {
        const Entry& e = m_entries[i];
        m_sorted[static_cast<std::size_t>(starts[cellOf(e)]++)] = e;
    }
    // Each start now is at the end of its cell, which is the start of the next one.
    std::copy_backward(starts, starts + cellCount, starts + cellCount + 1);
    starts[0] = static_cast<int>(begin);
    std::copy(m_sorted.begin() + static_cast<std::ptrdiff_t>(begin),
              m_sorted.begin() + static_cast<std::ptrdiff_t>(end),
              m_entries.begin() + static_cast<std::ptrdiff_t>(begin));
}

const HeightGrid::Entry* HeightGrid::First(double x, double y) const {
    const Entry* best = nullptr;
    if (!m_grids.empty()) Search(m_grids.front(), x, y, best);
    for (const Entry& e : m_far) {
        if (best != nullptr && e.number > best->number) break;
        if (IsNear(e.x, e.y, x, y)) return &e;
    }
    return best;
}

void HeightGrid::Search(const Cells& cells, double x, double y, const Entry*& best) const {
    if (cells.OutOfReach(x, y)) return;
    const std::size_t left = cells.Column(x - kReach);
    const std::size_t right = cells.Column(x + kReach);
    const std::size_t top = cells.Row(y + kReach);
    for (std::size_t row = cells.Row(y - kReach); row <= top; ++row)
        for (std::size_t column = left; column <= right; ++column)
            SearchCell(cells, row * static_cast<std::size_t>(cells.columns) + column, x, y, best);
}

void HeightGrid::SearchCell(const Cells& cells, std::size_t cell, double x, double y, const Entry*& best) const {
    const auto from = static_cast<std::size_t>(m_starts[cells.firstStart + cell]);
    const auto to = static_cast<std::size_t>(m_starts[cells.firstStart + cell + 1]);
    if (to - from > kCrowded && !cells.crowded.empty()) {
        const auto own =
            std::lower_bound(cells.crowded.begin(), cells.crowded.end(), std::pair<std::size_t, std::size_t>(cell, 0));
        Search(m_grids[own->second], x, y, best);
        return;
    }
    for (std::size_t i = from; i < to; ++i) {
        const Entry& e = m_entries[i];
        if (best != nullptr && e.number > best->number) return;
        if (IsNear(e.x, e.y, x, y)) {
            best = &e;
            return;
        }
    }
}

}  // namespace zm::geometry
