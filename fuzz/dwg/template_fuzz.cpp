// Any bytes as a template: refused with a reason, or a sound drawing comes of it.
#include "dwg/writer/selection.h"
#include "dwg/writer/writer.h"
#include "fuzz/dwg/session_in_memory.h"
#include "tests/support/test_host.h"

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
    using namespace zm;
    static test::TestHost host;
    host.boxes.clear();
    dwg::ResetState();
    std::vector<std::uint8_t> file(data, data + size);
    const dwg::FileOwner stream = fuzz::StreamOn(file, "rb");
    if (stream == nullptr) return 0;
    std::string problem;
    const dwg::DrawingTemplate drawing = dwg::ReadTemplate(stream.get(), problem);
    if (!problem.empty()) return 0;
    const std::size_t gap = dwg::Load32(drawing.bytes.data() + 50) - dwg::Load32(drawing.bytes.data() + 24);
    fuzz::MemoryDrawing memory(drawing);
    memory.SetTail(dwg::state().session->tables().tail().size());
    char layer[] = "road";
    char style[] = "song";
    char font[] = "txt,hztxt";
    const double xyz[] = {1, 2, 3, 4, 5, 6};
    _LDBsetlay(layer);
    _LDBsetstyle(1, style, font, 0.8, 18);
    _LDBtext(1, 1, 2, 3, 4, "text \xC2\xB7");
    _LDBpolyline3d(xyz, 2);
    _LDBline(1, 2, 3, 4);
    // With bytes between entities and tables the tables do not follow the last record directly.
    if (gap == 0)
        memory.Check();
    else
        fuzz::Require(dwg::state().session->Finish(), "the file is written whole");
    return 0;
}
