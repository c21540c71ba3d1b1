// The proof of a block file before anything of it is copied.
#pragma once

#include <cstdint>
#include <set>
#include <vector>

#include "dwg/block/record_proof.h"
#include "dwg/block/source_drawing.h"
#include "dwg/writer/tables.h"

namespace zm::dwg {

/// Why a block file was not copied.
struct CopyFault {
    const char* reason = nullptr;  // a part of a sentence; null: nothing is wrong
    std::uint64_t offset = 0;      // of the record in the block file
    bool limit = false;            // the file is sound, but a limit of the drawing was met
    bool unknown = false;          // the file is sound, but has what block copying does not know
};

constexpr char kSectionFull[] = "the block definitions of the drawing would pass 64000 bytes";

/// Proves every record that copying would copy, those of nested blocks included. What it finds sound can still fail to
/// be copied: for an index outside a layer or linetype table, for fields that copying cannot turn into the output's
/// shape, and for the limits of the drawing.
class BlockFileProof {
 public:
    /// \param tail  bytes at the end of its records that the output lacks: 0 or 2
    BlockFileProof(SourceFile& file, SourceDrawing& source, Tables& tables, int tail);
    CopyFault Run();

 private:
    bool Fail(const char* reason, bool limit = false);
    bool ProveAll();
    bool ProveEntities();
    bool ProveNested(std::uint64_t place);
    bool ProveNextRecord(SequenceProof& sequence);
    bool ProveReference();
    bool IsSoundAsItIs();

    SourceFile& m_file;
    SourceDrawing& m_source;
    Tables& m_tables;
    const RecordShape m_shape;
    std::uint64_t m_place = 0;            // of the next record in the file
    std::uint64_t m_recordStart = 0;      // of the record in hand
    std::uint64_t m_proven = 0;           // bytes
    bool m_pastReference = false;         // a reference of the section at hand was read
    std::vector<std::uint8_t> m_record;   // the record in hand
    std::set<std::uint32_t> m_known;      // block numbers that references hold
    std::vector<std::uint64_t> m_wanted;  // where these blocks begin, in the order of their first references
    CopyFault m_fault;
};

}  // namespace zm::dwg
