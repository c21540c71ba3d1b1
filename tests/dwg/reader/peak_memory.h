// The most memory that this test program had at once since a mark was set.
#pragma once

#include <cstddef>

namespace zm::test {

/// Forgets what was most so far.
void MarkMemory();
/// Bytes above what was there at the mark.
std::size_t PeakSinceMark();

}  // namespace zm::test
