// Any bytes as a block file: copied so that the reader finds nothing wrong, or left out with the drawing as it was.
#include "dwg/block/block_copy.h"
#include "dwg/writer/writer.h"
#include "fuzz/dwg/proof_by_reader.h"
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
    if (size < 2) return 0;
    host.boxes.clear();
    dwg::ResetState();
    dwg::state().blockTail = (data[0] & 1) != 0 ? 2 : 0;
    std::vector<std::uint8_t> file(data + 1, data + size);
    fuzz::MemoryDrawing memory(drawing);
    dwg::Session& session = *dwg::state().session;
    _LDBline(1, 2, 3, 4);
    try {
        // Twice, so that the second meets the blocks of the first.
        for (const char* name : {"FIRST", "SECOND"}) {
            dwg::SourceFile source(fuzz::StreamOn(file, "rb"));
            const int blocks = session.tables().Count(dwg::Table::block);
            const dwg::CopyFault fault = dwg::CopyBlockFile(session, source, name);
            fuzz::Require(fault.reason == nullptr || session.tables().Count(dwg::Table::block) == blocks,
                          "a block that is left out leaves the block table");
        }
    } catch (const test::ProcessEnded&) {
        return 0;  // a linetype that nobody has
    }
    memory.Check();
    fuzz::ProveByReader(memory.Bytes(), session.tables());
    return 0;
}
