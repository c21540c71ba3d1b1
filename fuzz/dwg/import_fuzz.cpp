// Any bytes as a block file that is imported whole: the drawing stays sound for other programs, or is as it was.
#include "dwg/import/block_import.h"
#include "dwg/reader/check.h"
#include "dwg/writer/writer.h"
#include "fuzz/dwg/session_in_memory.h"
#include "tests/support/test_host.h"

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
    using namespace zm;
    static test::TestHost host;
    static const dwg::DrawingTemplate drawing = [] {
        dwg::DrawingTemplate made;
        const std::string bytes = tool::TemplateDrawing();
        made.bytes.assign(bytes.begin(), bytes.end());
        return made;
    }();
    host.boxes.clear();
    dwg::ResetState();
    fuzz::MemoryDrawing memory(drawing);
    dwg::Session& session = *dwg::state().session;
    _LDBline(1, 2, 3, 4);
    // Twice, so that the second meets the blocks of the first.
    for (const char* name : {"FIRST", "SECOND"}) {
        const int blocks = session.tables().Count(dwg::Table::block);
        const dwg::ImportFault fault = dwg::ImportBlockFile(session, {data, data + size}, name);
        fuzz::Require(fault.reason.empty() || session.tables().Count(dwg::Table::block) == blocks,
                      "a block that is left out leaves the block table");
    }
    memory.CheckWithoutSurplus();
    const dwg::reader::Drawing written(memory.Bytes());
    for (const dwg::reader::Finding& finding : dwg::reader::Check(written).problems)
        fuzz::Require(false, finding.text.c_str());
    return 0;
}
