// The table of known point heights that DWG output takes its elevations from.
#include <algorithm>
#include <cstdint>
#include <limits>
#include <memory>
#include <new>
#include <optional>
#include <utility>

#include "geometry/elevation.h"
#include "geometry/height_grid.h"
#include "geometry/state.h"
#include "runtime/uses.h"
#include "zenromath/geometry.h"

using zm::geometry::HeightGrid;
using zm::geometry::IsNear;
using zm::geometry::state;

namespace {

constexpr double kGreatestHeight = 9000.0;  // metres; a greater one means "unknown"
constexpr std::int64_t kScansOfAGrid = 8;   // building a grid costs about as much as so many scans of all the points

}  // namespace

// A grid over the first points of the table. Those after it, which came later, are scanned until that has cost as much
// as building the grid anew, so that neither a few questions nor a few new points pay for a grid.
class Find4H::Index {
 public:
    const HeightGrid::Entry* First(double x, double y) const { return m_grid ? m_grid->First(x, y) : nullptr; }
    int Covered() const { return m_covered; }

    void Prepare(const double* x, const double* y, const double* h, int n) {
        m_scanned += n - m_covered;
        if (m_scanned <= kScansOfAGrid * n) return;
        m_scanned = 0;
        try {
            m_grid.emplace(x, y, h, n);
            m_covered = n;
        } catch (const std::bad_alloc&) {  // without memory the scan goes on
            m_grid.reset();
            m_covered = 0;
        }
    }

 private:
    std::optional<HeightGrid> m_grid;
    int m_covered = 0;
    std::int64_t m_scanned = 0;  // points looked at after the grid
};

Find4H::Find4H(int n, double* x, double* y, double* h)
    : m_x(nullptr), m_y(nullptr), m_h(nullptr), m_n(0), m_savedElevation(zm::dwg::CurrentElevation()) {
    state().armed = false;
    state().currentHeights = this;
    if (n > 0) AppendDate(n, x, y, h);
}

Find4H::~Find4H() {
    delete m_index;
    delete[] m_x;
    delete[] m_y;
    delete[] m_h;
    // Required: any table disarms, also one that a newer has replaced; applications end one job and begin the next so.
    state().armed = false;
    if (state().currentHeights == this) state().currentHeights = nullptr;
    SetDwgElevation(m_savedElevation);
}

// Makes room for this many points, at least half as much again as before; false if memory lacks.
bool Find4H::Grow(int size) {
    if (size <= m_capacity) return true;
    const std::int64_t half = static_cast<std::int64_t>(m_capacity) + m_capacity / 2;
    const int room = static_cast<int>(std::clamp<std::int64_t>(half, size, std::numeric_limits<int>::max()));
    std::unique_ptr<double[]> grown[3];
    double** const arrays[3] = {&m_x, &m_y, &m_h};
    for (auto& array : grown) {
        array.reset(new (std::nothrow) double[static_cast<std::size_t>(room)]);
        if (array == nullptr) return false;
    }
    for (int i = 0; i < 3; ++i) {
        if (m_n > 0) std::copy(*arrays[i], *arrays[i] + m_n, grown[i].get());
        delete[] * arrays[i];
        *arrays[i] = grown[i].release();
    }
    m_capacity = room;
    return true;
}

int Find4H::AppendDate(int n, double* x, double* y, double* h) {
    if (n > 0) {
        if (x == nullptr || y == nullptr || h == nullptr || n > std::numeric_limits<int>::max() - m_n) return 0;
        if (!Grow(m_n + n)) return 0;
        std::copy(x, x + n, m_x + m_n);
        std::copy(y, y + n, m_y + m_n);
        std::copy(h, h + n, m_h + m_n);
        m_n += n;
    }
    state().armed = true;
    return 1;
}

double Find4H::FindH(double x, double y) {
    if (m_index == nullptr) m_index = new (std::nothrow) Index;
    int covered = 0;
    double height = 0.0;
    bool found = false;
    if (m_index != nullptr) {
        m_index->Prepare(m_x, m_y, m_h, m_n);
        covered = m_index->Covered();
        if (const HeightGrid::Entry* entry = m_index->First(x, y)) {
            height = entry->h;
            found = true;
        }
    }
    zm::uses::Count(found || covered == m_n ? zm::uses::heightByGrid : zm::uses::heightByScan);
    for (int i = covered; !found && i < m_n; ++i) {
        if (!IsNear(m_x[i], m_y[i], x, y)) continue;
        height = m_h[i];
        found = true;
    }
    return height > kGreatestHeight ? 0.0 : height;
}

void _LDBsyncelev(double x, double y) {
    if (state().armed && state().currentHeights != nullptr) SetDwgElevation(state().currentHeights->FindH(x, y));
}
