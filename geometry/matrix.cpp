// Dense matrices: inversion, multiplication, transposition.
#include <algorithm>
#include <cmath>
#include <cstddef>
#include <memory>
#include <new>
#include <utility>

#include "geometry/texts.h"
#include "zenromath/geometry.h"
#include "zenromath/host.h"

namespace {

// An array on the stack while it is small, else on the heap.
template <class T, std::size_t kSmall>
class WorkArray {
 public:
    explicit WorkArray(std::size_t size) : m_heap(size > kSmall ? new (std::nothrow) T[size] : nullptr) {
        m_data = size > kSmall ? m_heap.get() : m_stack;
    }
    T* data() { return m_data; }  // null if memory lacks

 private:
    T m_stack[kSmall];
    std::unique_ptr<T[]> m_heap;
    T* m_data;
};

// A square matrix under elimination.
class Square {
 public:
    Square(double* a, std::size_t n) : m_a(a), m_n(n) {}
    double* Row(std::size_t i) { return m_a + i * m_n; }

    // The greatest magnitude among rows and columns from k on; the first one in row order wins a tie.
    double FindPivot(std::size_t k, std::size_t& pivotRow, std::size_t& pivotColumn) {
        double greatest = 0.0;
        pivotRow = k;
        pivotColumn = k;
        for (std::size_t i = k; i < m_n; ++i)
            for (std::size_t j = k; j < m_n; ++j) {
                const double magnitude = std::fabs(Row(i)[j]);
                if (magnitude > greatest) {
                    greatest = magnitude;
                    pivotRow = i;
                    pivotColumn = j;
                }
            }
        return greatest;
    }

    void ExchangeRows(std::size_t i, std::size_t k) {
        if (i != k) std::swap_ranges(Row(i), Row(i) + m_n, Row(k));
    }
    void ExchangeColumns(std::size_t j, std::size_t k) {
        for (std::size_t i = 0; j != k && i < m_n; ++i) std::swap(Row(i)[j], Row(i)[k]);
    }

    void Eliminate(std::size_t k) {
        double* pivotRow = Row(k);
        pivotRow[k] = 1.0 / pivotRow[k];
        const double inverse = pivotRow[k];
        for (std::size_t j = 0; j < m_n; ++j)
            if (j != k) pivotRow[j] *= inverse;
        for (std::size_t i = 0; i < m_n; ++i) {
            if (i == k) continue;
            double* row = Row(i);
            const double factor = row[k];
            for (std::size_t j = 0; j < k; ++j) row[j] -= factor * pivotRow[j];
            for (std::size_t j = k + 1; j < m_n; ++j) row[j] -= factor * pivotRow[j];
            row[k] = -factor * inverse;
        }
    }

 private:
    double* m_a;
    std::size_t m_n;
};

}  // namespace

double* conversema(double* a, int n) {
    if (a == nullptr) return nullptr;
    if (n < 1) return a;
    const auto size = static_cast<std::size_t>(n);
    WorkArray<std::size_t, 64> pivots(2 * size);
    if (pivots.data() == nullptr) return nullptr;
    std::size_t* rows = pivots.data();
    std::size_t* columns = rows + size;
    Square matrix(a, size);
    for (std::size_t k = 0; k < size; ++k) {
        const double greatest = matrix.FindPivot(k, rows[k], columns[k]);
        // Required: compared against 1 and not against a scale of the matrix; callers know which matrices fail.
        if (greatest + 1.0 == 1.0) {
            zm::CurrentHost().ShowAppBox(zm::geometry::texts::kSingularMatrix, MB_OK, 0);
            return nullptr;
        }
        matrix.ExchangeRows(k, rows[k]);
        matrix.ExchangeColumns(k, columns[k]);
        matrix.Eliminate(k);
    }
    for (std::size_t k = size; k-- > 0;) {
        matrix.ExchangeRows(k, columns[k]);
        matrix.ExchangeColumns(k, rows[k]);
    }
    return a;
}

double* mamulma(double* A, int m, int k, double* B, int n, double* C) {
    if (m < 1 || n < 1 || C == nullptr || (k > 0 && (A == nullptr || B == nullptr))) return C;
    const auto columns = static_cast<std::size_t>(n);
    const std::size_t inner = k > 0 ? static_cast<std::size_t>(k) : 0;
    for (std::size_t i = 0; i < static_cast<std::size_t>(m); ++i) {
        // Row by row, so that each element is the sum over l from 0 upward while B is read in order.
        double* row = C + i * columns;
        std::fill(row, row + columns, 0.0);
        for (std::size_t l = 0; l < inner; ++l) {
            const double factor = A[i * inner + l];
            const double* from = B + l * columns;
            for (std::size_t j = 0; j < columns; ++j) row[j] += factor * from[j];
        }
    }
    return C;
}

double* turnmatrix(double* A, int r, int c) {
    if (A == nullptr || r < 1 || c < 1) return A;
    const auto rows = static_cast<std::size_t>(r);
    const auto columns = static_cast<std::size_t>(c);
    WorkArray<double, 64> turned(rows * columns);
    if (turned.data() == nullptr) return nullptr;
    for (std::size_t i = 0; i < rows; ++i)
        for (std::size_t j = 0; j < columns; ++j) turned.data()[j * rows + i] = A[i * columns + j];
    std::copy(turned.data(), turned.data() + rows * columns, A);
    return A;
}
