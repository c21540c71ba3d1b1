#include "fuzz/tools/whole_runs.h"

#include <cstdio>
#include <cstdlib>

#include "tools/kit/exit_codes.h"
#include "tools/kit/output_file.h"
#include "tools/kit/text.h"
#include "tools/kit/tool_host.h"
#include "zenromath/dwg_reader.h"

namespace zm::fuzz {
namespace {

namespace fs = std::filesystem;
using namespace zm::tool;

bool EndsIn(const std::string& text, const std::string& end) {
    return text.size() >= end.size() && text.compare(text.size() - end.size(), end.size(), end) == 0;
}

bool IsWhole(const std::string& extension, const std::string& bytes) {
    if (extension == ".dwg")
        return zm::DrawingFile(std::vector<std::uint8_t>(bytes.begin(), bytes.end())).Prove().sound();
    if (extension == ".dxf") return EndsIn(bytes, "0\nEOF\n") || EndsIn(bytes, "0\r\nEOF\r\n");
    if (extension == ".svg") return EndsIn(bytes, "</svg>\n");
    return !bytes.empty();
}

}  // namespace

const fs::path& Folder() {
    static const PrivateFolder folder;
    static const bool ready = setenv("XDG_CONFIG_HOME", folder.path().c_str(), 1) == 0;
    if (!ready) std::abort();
    return folder.path();
}

void Write(const char* name, const void* data, std::size_t size) {
    std::FILE* file = std::fopen((Folder() / name).c_str(), "wb");
    if (file == nullptr || (size > 0 && std::fwrite(data, 1, size, file) != size)) std::abort();
    std::fclose(file);
}

void Write(const char* name, const std::string& text) {
    Write(name, text.data(), text.size());
}

bool Run(const std::vector<const char*>& outputs, const std::function<void(Context&)>& work) {
    Report report;
    report.SetQuiet(true);
    std::vector<ReportedEvent> events;
    report.Collect(&events);
    ToolHost host(report);
    Context context{report, host};
    for (const char* output : outputs) fs::remove(Folder() / output);
    try {
        work(context);
    } catch (const Failure&) {
        return false;
    } catch (const LibraryStop&) {
        return false;
    }
    return true;
}

void Prove(const std::vector<const char*>& outputs) {
    for (const char* output : outputs) {
        const fs::path path = Folder() / output;
        if (IsWhole(path.extension().string(), ReadWholeFile(path, std::size_t{1} << 28))) continue;
        std::fprintf(stderr, "%s is not whole\n", path.c_str());
        std::abort();
    }
}

}  // namespace zm::fuzz
