#include "tools/zenro/store/box_tree.h"

#include <algorithm>
#include <numeric>
#include <utility>

namespace zm::tool {
namespace {

constexpr std::size_t kGroup = 16;
constexpr std::size_t kFew = 64;  // fewer than one in so many are sorted
constexpr double kCells = 65535.0;

std::uint32_t CellOf(double value, double low, double high) {
    return high > low ? static_cast<std::uint32_t>(std::clamp((value - low) / (high - low), 0.0, 1.0) * kCells) : 0;
}

}  // namespace

// The plane case: the quadrant is turned and flipped at each step.
std::uint32_t AlongHilbert(std::uint32_t x, std::uint32_t y) {
    std::uint32_t along = 0;
    for (std::uint32_t side = 1u << 15; side > 0; side /= 2) {
        const std::uint32_t right = (x & side) != 0 ? 1 : 0, up = (y & side) != 0 ? 1 : 0;
        along += side * side * ((3 * right) ^ up);
        if (up != 0) continue;
        if (right != 0) {
            x = 65535 - x;
            y = 65535 - y;
        }
        std::swap(x, y);
    }
    return along;
}

BoxTree::BoxTree(const std::vector<Box>& boxes) : m_order(boxes.size()) {
    std::iota(m_order.begin(), m_order.end(), 0u);
    Box all;
    for (const Box& box : boxes)
        if (!box.empty()) all.Add(box);
    std::vector<std::uint32_t> along(boxes.size());
    for (std::size_t i = 0; i < boxes.size(); ++i) {
        const Box& b = boxes[i];
        if (!b.empty())
            along[i] =
                AlongHilbert(CellOf((b.x1 + b.x2) / 2, all.x1, all.x2), CellOf((b.y1 + b.y2) / 2, all.y1, all.y2));
    }
    std::stable_sort(m_order.begin(), m_order.end(),
                     [&](std::uint32_t a, std::uint32_t b) { return along[a] < along[b]; });
    Level level;
    level.boxes.reserve(boxes.size());
    for (const std::uint32_t i : m_order) level.boxes.push_back(boxes[i]);
    while (true) {
        Level next;
        if (level.boxes.size() > 1) {
            next.boxes.reserve(level.boxes.size() / kGroup + 1);
            for (std::size_t i = 0; i < level.boxes.size(); i += kGroup) {
                Box group;
                for (std::size_t k = i; k < std::min(i + kGroup, level.boxes.size()); ++k)
                    if (!level.boxes[k].empty()) group.Add(level.boxes[k]);
                next.boxes.push_back(group);
            }
        }
        m_levels.push_back(std::move(level));
        if (next.boxes.empty()) break;
        level = std::move(next);
    }
}

std::vector<std::uint32_t> BoxTree::Within(const Box& window) const {
    std::vector<std::uint32_t> found;
    if (m_order.empty()) return found;
    std::vector<std::pair<std::size_t, std::size_t>> open = {{m_levels.size() - 1, 0}};
    while (!open.empty()) {
        const auto [level, at] = open.back();
        open.pop_back();
        if (!m_levels[level].boxes[at].Meets(window)) continue;
        if (level == 0) {
            found.push_back(m_order[at]);
            continue;
        }
        const std::size_t end = std::min((at + 1) * kGroup, m_levels[level - 1].boxes.size());
        for (std::size_t k = at * kGroup; k < end; ++k) open.emplace_back(level - 1, k);
    }
    if (found.size() < m_order.size() / kFew) {
        std::sort(found.begin(), found.end());
        return found;
    }
    std::vector<bool> met(m_order.size());  // in order without a sort, which takes seconds for millions
    for (const std::uint32_t i : found) met[i] = true;
    std::size_t next = 0;
    for (std::uint32_t i = 0; i < met.size(); ++i)
        if (met[i]) found[next++] = i;
    return found;
}

}  // namespace zm::tool
