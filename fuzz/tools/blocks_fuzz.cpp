// Any text as a list of blocks, and a block file that may be damaged: a point and a line are drawn to DWG with it, by import
// and by copying; refused, or a drawing that other readers take.
#include <cstddef>

#include "fuzz/tools/whole_runs.h"
#include "tools/kit/text.h"
#include "tools/zenro/map/draw_job.h"

namespace {

using namespace zm::fuzz;

constexpr char kPoints[] =
    R"({"type":"FeatureCollection","crs":{"type":"name","properties":{"name":"urn:ogc:def:crs:EPSG::4528"}},"features":[)"
    R"({"type":"Feature","properties":{"c":1},"geometry":{"type":"Point","coordinates":[40512020,3456020]}},)"
    R"({"type":"Feature","properties":{"c":2},"geometry":{"type":"Point","coordinates":[40512060,3456040]}}]})";

bool Draw(const char* output, bool copied, const char* blocks, zm::tool::Context& context) {
    zm::tool::DrawJob job;
    job.source.inputs = {(Folder() / "in.geojson").string()};
    job.rules = (Folder() / "any.rules").string();
    job.outputs = {(Folder() / output).string()};
    job.sheet = {40512000.0, 3456000.0, 40512100.0, 3456080.0};
    job.scale = 1000.0;
    job.frame = false;
    job.jobs = 1;
    job.library.blocks = blocks;
    job.library.blocksAsCopied = copied;
    RunDrawJob(job, context);
    return true;
}

// The block file is what zenro itself draws of the two points.
void Prepare() {
    Write("in.geojson", kPoints);
    Write("any.rules", "c = 1 -> symbol 17\n* -> symbol 63\n");
    if (!Run({"TREE.dwg"}, [](zm::tool::Context& context) { Draw("TREE.dwg", false, "", context); })) std::abort();
}

}  // namespace

// The first byte says where the block file is damaged and how it is copied; the rest is the list.
extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
    static const std::string sound = [] {
        Prepare();
        return zm::tool::ReadWholeFile(Folder() / "TREE.dwg", std::size_t{1} << 24);
    }();
    if (size < 3) return 0;
    std::string block = sound;
    const std::size_t place = data[1] * 256u + data[2];
    if (data[0] >= 128) block[place % block.size()] = static_cast<char>(data[0]);
    Write("TREE.dwg", block);
    Write("list", data + 3, size - 3);
    const std::string list = (Folder() / "list").string();
    if (Run({"o.dwg"}, [&](zm::tool::Context& context) { Draw("o.dwg", data[0] % 2 != 0, list.c_str(), context); }))
        Prove({"o.dwg"});
    return 0;
}
