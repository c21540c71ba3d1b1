// What a fuzz target of block copying proves of its drawing by the reader.
#pragma once

#include "dwg/format/file_layout.h"
#include "dwg/reader/check.h"
#include "fuzz/dwg/session_in_memory.h"

namespace zm::fuzz {

/// Whether a finding is the one that is there on purpose: a block file with blocks that nobody refers to leaves holes,
/// so that a reference means a slot behind the table's end.
inline bool IsHole(const dwg::reader::Drawing& drawing, const dwg::reader::Finding& finding, dwg::Tables& tables) {
    dwg::reader::Record record;
    std::uint64_t next = 0;
    if (finding.text.find("refers to block") == std::string::npos) return false;
    if (!dwg::reader::ReadBlockRecord(drawing, finding.offset, record, next)) return false;
    const double number = record.Number("block", -1.0);
    if (number < static_cast<double>(drawing.blocks.size()) || number >= dwg::LayoutOf(dwg::Table::block).capacity)
        return false;
    const std::uint8_t* slot = tables.Slot(dwg::Table::block, static_cast<int>(number));
    return dwg::Load16(slot + dwg::block_record::kMark) == dwg::block_record::kMarkValue;
}

/// Ends the run where the reader finds something wrong with a finished drawing.
inline void ProveByReader(std::vector<std::uint8_t> bytes, dwg::Tables& tables) {
    const dwg::reader::Drawing drawing(std::move(bytes));
    for (const dwg::reader::Finding& finding : dwg::reader::Check(drawing).problems)
        Require(finding.byCopy || IsHole(drawing, finding, tables), finding.text.c_str());
}

}  // namespace zm::fuzz
