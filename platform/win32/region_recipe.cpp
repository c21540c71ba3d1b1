#include "platform/win32/region_recipe.h"

#include <algorithm>
#include <span>

namespace zm::win32 {
namespace {

constexpr int kDeepest = 64;  // combinations of combinations; beyond it they are computed at once

Region Joined(std::span<const RECT> parts) {
    if (parts.empty()) return {};
    if (parts.size() == 1) return Region::Rectangle(parts[0].left, parts[0].top, parts[0].right, parts[0].bottom);
    const std::size_t half = parts.size() / 2;
    return Region::Combined(Joined(parts.first(half)), Joined(parts.subspan(half)), RGN_OR);
}

Region PixelsOf(HRGN region) {
    const DWORD size = ::GetRegionData(region, 0, nullptr);
    if (size < sizeof(RGNDATAHEADER)) return {};
    std::vector<std::max_align_t> room(size / sizeof(std::max_align_t) + 1);
    auto* data = reinterpret_cast<RGNDATA*>(room.data());
    if (::GetRegionData(region, size, data) == 0) return {};
    return Joined({reinterpret_cast<const RECT*>(data->Buffer), data->rdh.nCount});
}

}  // namespace

RegionRecipe::Pointer RegionRecipe::Polygon(const POINT* points, int count, int mode) {
    auto recipe = std::make_shared<RegionRecipe>();
    recipe->m_points.assign(points, points + count);
    recipe->m_mode = mode;
    return recipe;
}

RegionRecipe::Pointer RegionRecipe::Rectangle(int left, int top, int right, int bottom) {
    auto recipe = std::make_shared<RegionRecipe>();
    recipe->m_region = Region::Rectangle(left, top, right, bottom);
    return recipe;
}

RegionRecipe::Pointer RegionRecipe::Combined(const Pointer& first, const Pointer& second, int mode) {
    auto recipe = std::make_shared<RegionRecipe>();
    recipe->m_first = first;
    recipe->m_second = second;
    recipe->m_mode = mode;
    recipe->m_depth = std::max(first->m_depth, second->m_depth) + 1;
    if (recipe->m_depth > kDeepest) {
        recipe->region();
        recipe->m_first = recipe->m_second = nullptr;
        recipe->m_depth = 0;
    }
    return recipe;
}

RegionRecipe::Pointer RegionRecipe::Of(HRGN region) {
    auto recipe = std::make_shared<RegionRecipe>();
    recipe->m_region = PixelsOf(region);
    return recipe;
}

const Region& RegionRecipe::region() const {
    if (!m_region) m_region = Made();
    return *m_region;
}

Region RegionRecipe::Made() const {
    if (!m_points.empty()) return Region::Polygon(m_points.data(), static_cast<int>(m_points.size()), m_mode);
    return Region::Combined(m_first->region(), m_second->region(), m_mode);
}

}  // namespace zm::win32
