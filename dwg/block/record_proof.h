// Proves records of block files: that each is as long as the fields which its flags and options announce, that its
// coordinates are finite, and that polylines and references with attributes are whole.
#pragma once

#include <cstdint>
#include <span>

#include "dwg/format/record_layout.h"

namespace zm::dwg {

/// What a record announces, as far as copying looks at it.
struct RecordProof {
    const char* fault = nullptr;  // a part of a sentence; null: nothing is wrong
    std::uint32_t block = 0;      // of a reference: the number where its flags say that it is
};

/// Whether nothing is asked of a record: it is erased, or of a kind that copying does not know and takes over whole.
inline bool Unproven(const std::uint8_t* header) {
    const std::uint8_t kind = header[0];
    return KindLayoutOf(kind) == nullptr || kind == kinds::kAttDef || kind == kinds::kAttrib ||
           kind == kinds::kDimension || kind == kinds::kViewport;
}

/// \param record  all bytes of the record, those of a nested reference included that its length does not count
/// \param styles  number of text styles that there are
RecordProof ProveRecord(std::span<const std::uint8_t> record, RecordShape shape, unsigned styles);

/// The order of the records of one section: vertices and attributes stand between the record that they belong to and a
/// SEQEND.
class SequenceProof {
 public:
    /// What is wrong with a record at this place; null: nothing.
    const char* Take(const std::uint8_t* header);
    /// To be asked at the section's end.
    const char* End() const;

 private:
    std::uint8_t m_open = 0;  // kind of the record whose sequence is open; 0: none
};

}  // namespace zm::dwg
