// Texts of the geometry that reach users.
#pragma once

namespace zm::geometry::texts {

inline constexpr char kSingularMatrix[] = "This group of data is not appropriate, matrix inversion failed!";

}  // namespace zm::geometry::texts
