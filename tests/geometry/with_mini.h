// A tolerance in force for a scope, and recorded calls that may ask for one.
#pragma once

#include <utility>

#include "tests/vector_runner/registry.h"
#include "zenromath/geometry.h"

namespace zm::test {

class [[nodiscard]] ScopedTolerance {
 public:
    explicit ScopedTolerance(double tolerance) : m_previous(SetMINI(tolerance)) {}
    ~ScopedTolerance() { SetMINI(m_previous); }
    ScopedTolerance(const ScopedTolerance&) = delete;
    ScopedTolerance& operator=(const ScopedTolerance&) = delete;

 private:
    double m_previous;
};

/// A handler under the tolerance of in.mini, 1e-08 where the record has none.
struct GeometryCall : vectors::Call {
    GeometryCall(const char* name, vectors::CallHandler handler)
        : vectors::Call(name, [run = std::move(handler)](const vectors::Json& in, vectors::Json& out) {
              const ScopedTolerance tolerance(in.contains("mini") ? vectors::Real(in.at("mini")) : 1e-08);
              run(in, out);
          }) {}
};

}  // namespace zm::test
