// Any text as a recording, replayed to SVG, DWG and a recording: refused, or each output is whole.
#include <cstddef>

#include "fuzz/tools/whole_runs.h"
#include "tools/kit/command_line.h"
#include "tools/zenro/verbs/verbs.h"

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
    using namespace zm::fuzz;
    static const std::vector<const char*> outputs = {"o.svg", "o.dwg", "o.rec"};
    Write("in.rec", data, size);
    const bool done = Run(outputs, [](zm::tool::Context& context) {
        zm::tool::CommandLine line("", "zenro");
        AddReplayVerb(line.root(), context);
        std::vector<std::string> arguments = {"replay", (Folder() / "in.rec").string()};
        for (const char* output : outputs) arguments.push_back((Folder() / output).string());
        if (line.Parse(arguments).kind != zm::tool::ParseResult::Kind::run) std::abort();
    });
    if (done) Prove(outputs);
    return 0;
}
