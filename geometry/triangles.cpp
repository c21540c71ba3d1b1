// A strip of triangles between two polylines.
#include <cmath>
#include <cstddef>
#include <cstdint>
#include <new>

#include "geometry/lines.h"
#include "zenromath/geometry.h"

namespace {

constexpr double kAtTheVertex =
    0.001;  // metres, sum of both differences: a crossing nearer than this is the end itself

struct Line {
    double* pairs;
    int n;
    double* At(int i) const { return pairs + 2 * static_cast<std::ptrdiff_t>(i); }
    // The first segment, from vertex `first` on, that the segment from p to q meets; 0 if none.
    int Meets(const double* p, const double* q, int first, double& X, double& Y) const {
        return norm_intersect(p[0], p[1], q[0], q[1], At(first), n - first, X, Y);
    }
};

// Is the diagonal from `from` (on the other line) to the vertex `to` of `line` blocked? The other line counts from
// otherNext on, the crossing with `from` itself aside; its own line counts from the vertex after `to`.
bool Blocked(const double* from, const Line& line, int to, const Line& other, int otherNext) {
    const double* end = line.At(to);
    double X = 0.0;
    double Y = 0.0;
    if (other.Meets(from, end, otherNext, X, Y) != 0 && std::fabs(X - from[0]) + std::fabs(Y - from[1]) > kAtTheVertex)
        return true;
    return line.Meets(from, end, to + 1, X, Y) != 0;
}

enum class Advance { first, second, fail };

class Strip {
 public:
    Strip(Line first, Line second) : m_first(first), m_second(second) {}

    // Writes the vertex numbers of all the triangles; false if the strip cannot go on.
    bool Write(int* triangles, std::int64_t count) {
        for (std::int64_t k = 0; k < count; ++k, triangles += 3) {
            const Advance advance = Next(k == 0);
            if (advance == Advance::fail) return false;
            if (advance == Advance::first) {
                triangles[0] = m_first.n + m_b;
                triangles[1] = m_a;
                triangles[2] = ++m_a;
            } else {
                triangles[0] = m_a;
                triangles[1] = m_first.n + m_b;
                triangles[2] = m_first.n + ++m_b;
            }
        }
        return true;
    }

 private:
    Advance Next(bool start) {
        const bool firstUsedUp = m_a + 1 == m_first.n;
        const bool secondUsedUp = m_b + 1 == m_second.n;
        if (firstUsedUp && secondUsedUp) return Advance::fail;
        if (firstUsedUp) return Advance::second;
        if (secondUsedUp) return Advance::first;

        const double* a = m_first.At(m_a);
        const double* b = m_second.At(m_b);
        const double sine1 = Sine(a, b, m_first.At(m_a + 1));
        const double sine2 = Sine(a, b, m_second.At(m_b + 1));
        const int sign1 = zm::geometry::SignOf(sine1, 0.0);
        const int sign2 = zm::geometry::SignOf(sine2, 0.0);
        const bool firstIsWider = std::fabs(sine1) > std::fabs(sine2);
        if (start) m_orientation = firstIsWider ? sign1 : sign2;
        if (m_orientation == 0) return Advance::fail;
        const bool firstTurnsWell = sign1 == m_orientation;
        const bool secondTurnsWell = sign2 == m_orientation;

        const bool firstBlocked = Blocked(b, m_first, m_a + 1, m_second, m_b + 1);
        if (firstBlocked && !secondTurnsWell) return Advance::fail;
        const bool secondBlocked = Blocked(a, m_second, m_b + 1, m_first, m_a + 1);
        if (secondBlocked) return !firstBlocked && firstTurnsWell ? Advance::first : Advance::fail;
        if (firstBlocked) return Advance::second;

        if (!firstTurnsWell) return secondTurnsWell ? Advance::second : Advance::fail;
        if (!secondTurnsWell) return Advance::first;
        return firstIsWider ? Advance::first : Advance::second;
    }

    static double Sine(const double* a, const double* b, const double* c) {
        return zm::geometry::NormCross(a[0], a[1], b[0], b[1], c[0], c[1]);
    }

    Line m_first;
    Line m_second;
    int m_a = 0;  // the base edge: vertices of the first and the second line
    int m_b = 0;
    int m_orientation = 0;  // of all triangles, from the first one
};

}  // namespace

int tqgettriln(int*& triangles, double* pairs1, int n1, double* pairs2, int n2) {
    triangles = nullptr;
    if (n1 < 1 || n2 < 1 || pairs1 == nullptr || pairs2 == nullptr) return 0;
    const std::int64_t count = static_cast<std::int64_t>(n1) + n2 - 2;
    if (count < 1) return 0;
    int* list = new (std::nothrow) int[static_cast<std::size_t>(3 * count)];
    if (list == nullptr) return 0;
    if (!Strip({pairs1, n1}, {pairs2, n2}).Write(list, count)) {
        delete[] list;
        return 0;
    }
    triangles = list;
    return static_cast<int>(count);
}
